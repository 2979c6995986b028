#include "tallowin/TrayIcon.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "core/ErrorRegimes.h"

namespace tallowin {

using forms::NotifyIconData;
using NotifyMessage = forms::TaskBar::NotifyMessage;

namespace {

constexpr std::int32_t kRecordSize = 88;
constexpr std::int32_t kIconId = 1;

}  // namespace

TrayIcon::TrayIcon(Parts parts, std::function<void()> restoreMainWindow)
    : parts_(parts), restoreMainWindow_(std::move(restoreMainWindow)) {
  parts_.form1.pichook.OnMouseMove = [this](float x) { pichook_MouseMove(x); };
  parts_.form1.OnCloseBox = [this] { Form1_QueryUnload(); };
}

void TrayIcon::Form1_Load() {
  NotifyIconData& record = parts_.form1.NotifyIconRecord;
  record.cbSize = kRecordSize;
  record.hWnd = &parts_.form1.pichook;
  record.uID = kIconId;
  record.uFlags = NotifyIconData::kMessage | NotifyIconData::kIcon | NotifyIconData::kTip;
  record.uCallbackMessage = forms::mouse::kMove;
  record.hIcon = "tallowin";
  const std::string& title = parts_.module.ProductTitle;
  record.szTip.fill('\0');
  std::copy_n(title.begin(), std::min(title.size(), record.szTip.size() - 1), record.szTip.begin());

  parts_.taskBar.SetIconMenu(parts_.mainForm, parts_.mainForm.protmnu,
                             [this](forms::MenuItem& item) { ChosenByThePanel(item); });
  (void)parts_.taskBar.Shell_NotifyIcon(NotifyMessage::Add, record);
  parts_.form1.Hide();
  parts_.taskBar.SetTaskVisible(false);
}

void TrayIcon::Form1_QueryUnload() {
  parts_.form1.NotifyIconRecord.hWnd = &parts_.form1.pichook;
  parts_.form1.NotifyIconRecord.uID = kIconId;
  Delete();
}

void TrayIcon::Delete() {
  (void)parts_.taskBar.Shell_NotifyIcon(NotifyMessage::Delete, parts_.form1.NotifyIconRecord);
}

void TrayIcon::pichook_MouseMove(float x) {
  message_ = static_cast<std::int32_t>(std::lround(x / forms::kTwipsPerPixelX));
  if (busy_) return;
  busy_ = true;
  core::ResumeOnError statement;
  statement([this] { Act(message_); });
  busy_ = false;
}

/// As in a menu of our own, nothing else is taken from the icon until the item's handler is
/// through.
void TrayIcon::ChosenByThePanel(forms::MenuItem& item) {
  if (busy_) return;
  busy_ = true;
  const std::unique_ptr<bool, void (*)(bool*)> busy(&busy_, [](bool* flag) { *flag = false; });
  item.Click();
}

void TrayIcon::Act(std::int32_t message) {
  if (message == forms::mouse::kLeftDoubleClick) {
    restoreMainWindow_();
  } else if (message == forms::mouse::kRightButtonUp) {
    parts_.questions.PopupMenu(parts_.mainForm, parts_.mainForm.protmnu);
  }
}

}  // namespace tallowin
