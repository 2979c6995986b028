#include "console/ControlText.h"

#include "console/Escapes.h"

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

std::string DescribeRows(const forms::ItemList& list) {
  std::string rows;
  for (std::size_t row = 0; row < list.ListCount(); ++row) {
    rows += "\t" + std::to_string(row) + "\t" + Cut(list.List(row)) + "\n";
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
    if (const auto* bar = dynamic_cast<const forms::ToolBar*>(control)) {
      text += DescribeButtons(*bar);
    }
  }
  return text;
}

}  // namespace tallowin::console
