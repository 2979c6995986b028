#include "forms/TaskBar.h"

#include <utility>

#include "forms/Controls.h"

namespace tallowin::forms {

bool TaskBar::Shell_NotifyIcon(NotifyMessage message, const NotifyIconData& data) {
  const bool same = icon_ && icon_->hWnd == data.hWnd && icon_->uID == data.uID;
  if (message == NotifyMessage::Add ? icon_.has_value() : !same) return false;
  if (message == NotifyMessage::Add) {
    icon_ = data;
  } else {
    icon_.reset();
  }
  Changed();
  return true;
}

void TaskBar::Mouse(std::uint32_t message) {
  if (!icon_ || icon_->hWnd == nullptr || (icon_->uFlags & NotifyIconData::kMessage) == 0) return;
  if (icon_->uCallbackMessage != mouse::kMove) return;
  icon_->hWnd->MouseMove(static_cast<float>(message) * kTwipsPerPixelX);
}

void TaskBar::SetIconMenu(Form& form, MenuItem& menu, std::function<void(MenuItem&)> chosen) {
  iconMenuForm_ = &form;
  iconMenu_ = &menu;
  iconMenuChosen_ = std::move(chosen);
  Changed();
}

void TaskBar::ChooseFromIconMenu(MenuItem& item) { iconMenuChosen_(item); }

void TaskBar::SetTaskVisible(bool visible) {
  taskVisible_ = visible;
  Changed();
}

void TaskBar::Changed() const {
  if (OnChange) OnChange();
}

}  // namespace tallowin::forms
