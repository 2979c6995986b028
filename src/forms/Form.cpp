#include "forms/Form.h"

#include <algorithm>

#include "forms/Controls.h"

namespace tallowin::forms {

namespace {

template <typename T>
T* FindByName(const std::vector<T*>& all, std::string_view name) {
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const T* one) { return one->Name() == name; });
  return found == all.end() ? nullptr : *found;
}

}  // namespace

Form::Form(std::string name) : Control(std::move(name)) { visible_ = false; }

Control* Form::Find(std::string_view name) const { return FindByName(controls_, name); }

std::vector<MenuItem*> Form::ItemsOf(const Control* menu) const {
  std::vector<MenuItem*> items;
  for (Control* control : controls_) {
    auto* item = dynamic_cast<MenuItem*>(control);
    if (item != nullptr && item->Container() == menu) items.push_back(item);
  }
  return items;
}

void Form::Show() {
  if (Visible()) {
    SetFocus();
    return;
  }
  SetVisible(true);
}

void Form::ShowModal(platform::EventLoop& loop) {
  if (Visible()) {
    throw platform::RunTimeError(platform::error::kFormAlreadyDisplayed,
                                 "Form already displayed; can't show modally");
  }
  modal_ = true;
  Show();
  loop.RunUntil([this] { return !Visible(); });
}

void Form::SetVisible(bool visible) {
  const bool comesUp = visible && !Visible();
  if (!visible) modal_ = false;
  Control::SetVisible(visible);
  if (comesUp && OnActivate) OnActivate();
}

void Form::SetState(WindowState state) {
  if (Assign(state_, state, Property::WindowState) && OnResize) OnResize();
}

void Form::PressCloseBox() {
  if (OnCloseBox) {
    OnCloseBox();
  } else {
    Hide();
  }
}

Form* Forms::Find(std::string_view name) const { return FindByName(forms_, name); }

const Form* Forms::OpenModal() const {
  const auto found =
      std::find_if(forms_.begin(), forms_.end(), [](const Form* form) { return form->Modal(); });
  return found == forms_.end() ? nullptr : *found;
}

}  // namespace tallowin::forms
