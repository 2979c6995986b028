#include "console/UserActions.h"

#include "console/Escapes.h"
#include "forms/Controls.h"
#include "forms/ListView.h"

namespace tallowin::console {

namespace {

std::string WhyUnusable(const forms::Control& control) {
  for (const auto* part = &control; part != nullptr; part = part->Container()) {
    const std::string which =
        part == &control ? control.Name() : control.Name() + " stands in " + part->Name() + " and";
    if (!part->Visible()) return which + " is hidden";
    if (!part->Enabled()) return which + " is disabled";
  }
  return {};
}

std::string WrongKind(const forms::Control& control, const std::string& possible) {
  return control.Name() + " is a " + std::string(control.Kind()) + "; " + possible;
}

std::string Type(forms::TextBox& box, const std::string& text) {
  if (box.Locked()) return box.Name() + " can be read, not changed";
  if (!box.MultiLine() && text.find_first_of("\r\n") != std::string::npos) {
    return box.Name() + " holds one line";
  }
  if (CountCharacters(text) > box.MaxLength()) {
    return box.Name() + " holds " + std::to_string(box.MaxLength()) + " characters at most";
  }
  box.SetText(text);
  return {};
}

std::string Tick(forms::CheckBox& box, const std::string& value) {
  // Greyed is a state that only the program itself gives a box.
  if (value != "0" && value != "1") return box.Name() + " takes 0 or 1";
  box.SetValue(value == "1" ? forms::CheckBox::Checked : forms::CheckBox::Unchecked);
  return {};
}

std::string ClickOn(forms::ToolBar& bar, std::string_view key) {
  if (const auto* button = bar.Find(key)) {
    bar.Click(*button);
    return {};
  }
  std::string failure = bar.Name() + " has the buttons";
  for (const auto& button : bar.Buttons()) failure += " " + button.Key;
  return failure;
}

std::string SelectIn(const forms::Control& list, std::size_t count, std::size_t index,
                     const std::function<void()>& select) {
  if (count == 0) return list.Name() + " has no entries";
  if (index >= count) {
    return list.Name() + " has the entries 0 to " + std::to_string(count - 1);
  }
  select();
  return {};
}

}  // namespace

std::string SetValue(forms::Control& control, const std::string& value) {
  if (!control.Usable()) return WhyUnusable(control);
  if (auto* box = dynamic_cast<forms::TextBox*>(&control)) return Type(*box, value);
  if (auto* box = dynamic_cast<forms::CheckBox*>(&control)) return Tick(*box, value);
  if (auto* box = dynamic_cast<forms::ComboBox*>(&control)) {
    if (value.find_first_of("\r\n") != std::string::npos) return box->Name() + " holds one line";
    box->SetText(value);
    return {};
  }
  return WrongKind(control, "a TextBox, a ComboBox or a CheckBox can be set");
}

std::string Click(forms::Control& control, std::string_view key) {
  if (!control.Usable()) return WhyUnusable(control);
  if (auto* bar = dynamic_cast<forms::ToolBar*>(&control)) return ClickOn(*bar, key);
  if (!key.empty()) return WrongKind(control, "a key names a button of a ToolBar");
  if (auto* button = dynamic_cast<forms::Button*>(&control)) {
    button->Click();
    return {};
  }
  auto* label = dynamic_cast<forms::Label*>(&control);
  if (label != nullptr && label->OnClick) {
    label->Click();
    return {};
  }
  auto* item = dynamic_cast<forms::MenuItem*>(&control);
  if (item == nullptr)
    return WrongKind(control, "a Button, a MenuItem or a button of a ToolBar can be clicked");
  if (item->IsSeparator()) return item->Name() + " is a separator";
  item->Click();
  return {};
}

std::string ClickOnTray(forms::TaskBar& taskBar, std::string_view action) {
  const bool doubleClick = action == "double";
  if (!doubleClick && action != "right") return "tray takes double or right";
  if (!taskBar.Icon()) return "there is no icon in the tray";
  taskBar.Mouse(doubleClick ? forms::mouse::kLeftDoubleClick : forms::mouse::kRightButtonUp);
  return {};
}

std::string Select(forms::Control& control, std::size_t index) {
  if (!control.Usable()) return WhyUnusable(control);
  if (auto* box = dynamic_cast<forms::ComboBox*>(&control)) {
    return SelectIn(*box, box->ListCount(), index, [&] { box->Select(index); });
  }
  if (auto* box = dynamic_cast<forms::ListBox*>(&control)) {
    return SelectIn(*box, box->ListCount(), index, [&] { box->Select(index); });
  }
  if (auto* list = dynamic_cast<forms::ListView*>(&control)) {
    return SelectIn(*list, list->RowCount(), index, [&] { list->Select(index); });
  }
  if (auto* tabs = dynamic_cast<forms::SSTab*>(&control)) {
    return SelectIn(*tabs, tabs->Captions().size(), index, [&] { tabs->SetTab(index); });
  }
  return WrongKind(control,
                   "an entry of a ComboBox, a ListBox, a ListView or an SSTab can be selected");
}

}  // namespace tallowin::console
