#include "forms/Controls.h"

#include <algorithm>

#include "platform/RunTimeError.h"

namespace tallowin::forms {

namespace {

void Run(const std::function<void()>& handler) {
  if (handler) handler();
}

platform::RunTimeError InvalidArrayIndex() {
  return {platform::error::kInvalidArrayIndex, "Invalid property array index"};
}

platform::RunTimeError InvalidPropertyValue() {
  return {platform::error::kInvalidPropertyValue, "Invalid property value"};
}

}  // namespace

void Label::Click() { Run(OnClick); }

void PictureBox::MouseMove(float x) {
  if (OnMouseMove) OnMouseMove(x);
}

void SSTab::SetTab(std::size_t tab) {
  if (tab >= captions_.size()) throw InvalidPropertyValue();
  Assign(tab_, tab, Property::Value);
}

void Button::Click() { Run(OnClick); }

TextBox::TextBox(Place place, std::string name, Traits traits)
    : Control(place, std::move(name), std::string()),
      text_(std::move(traits.text)),
      multiLine_(traits.multiLine),
      locked_(traits.locked),
      maxLength_(traits.maxLength),
      capacity_(traits.capacity) {}

void TextBox::SetText(std::string text) {
  if (!Assign(text_, std::move(text), Property::Text)) return;
  text_.shrink_to_fit();  // a short text would go on in the memory of a long one, such as a log
  Run(OnChange);
}

void TextBox::AppendText(std::string_view addition) {
  if (addition.empty()) return;
  if (addition.size() > capacity_ - std::min(capacity_, text_.size())) {
    std::string kept = text_.substr(text_.size() - std::min(text_.size(), capacity_ / 2));
    kept += addition;
    SetText(kept.substr(kept.size() - std::min(kept.size(), capacity_)));
    return;
  }
  text_ += addition;
  Notify({Property::AppendedText, addition});
  Run(OnChange);
}

void CheckBox::SetValue(int value) {
  if (value < Unchecked || value > Greyed) throw InvalidPropertyValue();
  if (Assign(value_, value, Property::Value)) Run(OnClick);
}

const std::string& ItemList::List(std::size_t index) const {
  if (index >= items_.size()) throw InvalidArrayIndex();
  return items_[index];
}

void ItemList::AddItem(std::string item) {
  items_.push_back(std::move(item));
  // A copy, because an observer may add in turn and so move the items.
  const std::string addition = items_.back();
  Notify({Property::AddedItem, addition});
}

void ItemList::Keep(const std::vector<bool>& keep) {
  ForgetPlaces();
  std::size_t index = 0;
  const auto removed =
      std::erase_if(items_, [&](const auto& /*item*/) { return !keep.at(index++); });
  if (removed > 0) Notify({Property::Items});
}

void ItemList::Clear() {
  ForgetPlaces();
  Assign(items_, {}, Property::Items);
}

void ComboBox::SetText(std::string text) {
  if (Assign(text_, std::move(text), Property::Text)) Run(OnChange);
}

void ComboBox::Select(std::size_t index) {
  SetText(List(index));
  Run(OnClick);
}

void ListBox::ForgetPlaces() {
  listIndex_.reset();
  selected_.clear();
}

void ListBox::Select(const std::vector<std::size_t>& indices) {
  if (indices.empty()) return;
  for (const std::size_t index : indices) (void)List(index);
  std::set<std::size_t> selected;
  if (TakesSeveral()) selected = selected_;
  for (const std::size_t index : indices) {
    if (!TakesSeveral()) selected.clear();
    if (!selected.insert(index).second) selected.erase(index);
  }
  listIndex_ = indices.back();
  Assign(selected_, std::move(selected), Property::Value);
  Run(OnClick);
}

const ToolBarButton& ToolBar::Buttons(std::size_t index) const {
  if (index == 0 || index > buttons_.size()) throw InvalidArrayIndex();
  return buttons_[index - 1];
}

const ToolBarButton* ToolBar::Find(std::string_view key) const {
  const auto found = std::find_if(buttons_.begin(), buttons_.end(),
                                  [&](const ToolBarButton& button) { return button.Key == key; });
  return found == buttons_.end() ? nullptr : &*found;
}

void ToolBar::Click(const ToolBarButton& button) {
  if (OnButtonClick) OnButtonClick(button);
}

void ToolBar::Click(std::string_view key) {
  const ToolBarButton* button = Find(key);
  if (button == nullptr) throw InvalidArrayIndex();
  Click(*button);
}

void MenuItem::Click() { Run(OnClick); }

}  // namespace tallowin::forms
