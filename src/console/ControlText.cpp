#include "console/ControlText.h"

#include "console/Escapes.h"
#include "forms/ListView.h"

namespace tallowin::console {

namespace {

std::string Cut(std::string_view value) {
  constexpr std::size_t kShownCharacters = 120;
  const auto shown = FirstCharacters(value, kShownCharacters);
  if (shown.size() == value.size()) return Escape(value);
  return Escape(shown) + "... (" + std::to_string(value.size()) + " bytes)";
}

std::string_view State(const forms::Control& control) {
  if (!control.Visible()) return "hidden";
  return control.Enabled() ? "" : "disabled";
}

bool IsSelected(const forms::ItemList& list, std::size_t row) {
  const auto* box = dynamic_cast<const forms::ListBox*>(&list);
  return box != nullptr && box->Selected(row);
}

std::string DescribeRows(const forms::ItemList& list) {
  std::string rows;
  for (std::size_t row = 0; row < list.ListCount(); ++row) {
    rows += "\t" + std::to_string(row) + "\t" + Cut(list.List(row));
    if (IsSelected(list, row)) rows += "\tselected";
    rows += "\n";
  }
  return rows;
}

std::string DescribeRows(const forms::ListView& list) {
  std::string rows = "\t";
  for (const auto& caption : list.Columns()) rows += "\t" + Cut(caption);
  rows += "\n";
  for (std::size_t row = 0; row < list.RowCount(); ++row) {
    rows += "\t" + std::to_string(row);
    for (std::size_t column = 0; column < list.Columns().size(); ++column) {
      rows += "\t" + Cut(list.Text(row, column));
    }
    rows.erase(rows.find_last_not_of('\t') + 1);
    rows += "\n";
  }
  return rows;
}

std::string DescribePages(const forms::SSTab& tabs) {
  std::string rows;
  for (std::size_t page = 0; page < tabs.Captions().size(); ++page) {
    rows += "\t" + std::to_string(page) + "\t" + Cut(tabs.Captions()[page]) + "\n";
  }
  return rows;
}

std::string DescribeButtons(const forms::ToolBar& bar) {
  std::string rows;
  for (const auto& button : bar.Buttons()) {
    rows += "\t" + Escape(button.Key) + "\t" + Cut(button.Caption) + "\n";
  }
  return rows;
}

}  // namespace

std::string DescribeControl(const forms::Control& control) {
  std::string line = control.Name() + "\t" + std::string(control.Kind()) + "\t" +
                     Cut(control.ValueText()) + "\t" + std::string(State(control)) + "\t" +
                     Cut(control.Caption());
  line.erase(line.find_last_not_of('\t') + 1);
  return line;
}

std::string DescribeForm(const forms::Form& form) {
  std::string text = DescribeControl(form) + "\n";
  for (const auto* control : form.Controls()) {
    text += DescribeControl(*control) + "\n";
    if (const auto* list = dynamic_cast<const forms::ItemList*>(control)) {
      text += DescribeRows(*list);
    }
    if (const auto* list = dynamic_cast<const forms::ListView*>(control)) {
      text += DescribeRows(*list);
    }
    if (const auto* tabs = dynamic_cast<const forms::SSTab*>(control)) {
      text += DescribePages(*tabs);
    }
    if (const auto* bar = dynamic_cast<const forms::ToolBar*>(control)) {
      text += DescribeButtons(*bar);
    }
  }
  return text;
}

}  // namespace tallowin::console
