// The program's icon in the notification area of this desktop.
#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>

#include "desktop/Binder.h"
#include "desktop/MenuBinder.h"
#include "desktop/NotificationArea.h"
#include "forms/TaskBar.h"

namespace tallowin::desktop {

/// Shows the icon of the task bar for as long as there is a notification area, and hands on what
/// the mouse does to it.
class TrayIconView {
 public:
  TrayIconView(forms::TaskBar& taskBar, platform::EventLoop& loop);
  ~TrayIconView();
  TrayIconView(const TrayIconView&) = delete;
  TrayIconView& operator=(const TrayIconView&) = delete;

  /// Whether a hidden window must wait in the task list, as there is no icon to bring it back with.
  [[nodiscard]] bool HiddenWaitInTaskList() const;
  /// The answer may be another one now.
  std::function<void()> OnChange;

 private:
  void Update();
  [[nodiscard]] std::unique_ptr<QSystemTrayIcon> MakeIcon(NotificationArea::Kind kind);
  /// The icon's window in an embedding panel is the toolkit's own.
  void KeepInReach();
  void MakeMenu();
  void Chosen(forms::MenuItem& item);
  void Activated(QSystemTrayIcon::ActivationReason reason);
  [[nodiscard]] bool IsSecondOfTwo();

  forms::TaskBar& taskBar_;
  platform::EventLoop& loop_;
  Binder binder_;
  NotificationArea area_;
  std::unique_ptr<QMenu> menu_;  ///< for desktops that show it by themselves
  std::unique_ptr<MenuBinder> menuBinder_;
  std::unique_ptr<QSystemTrayIcon> icon_;
  QElapsedTimer sinceActivation_;
};

}  // namespace tallowin::desktop
