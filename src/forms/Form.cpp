#include "forms/Form.h"

#include <algorithm>

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

void Form::Show() {
  if (Visible()) {
    SetFocus();
    return;
  }
  SetVisible(true);
}

void Form::SetVisible(bool visible) {
  const bool comesUp = visible && !Visible();
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

}  // namespace tallowin::forms
