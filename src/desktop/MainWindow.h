// The main window: menu bar, status log, the callers' addresses and the tools for them.
#pragma once

#include "core/MainForm.h"
#include "desktop/FormWindow.h"
#include "desktop/MenuBinder.h"

namespace tallowin::desktop {

/// Of the items of its menus, wherever these are shown.
[[nodiscard]] std::span<const MenuLook> MainMenuLooks();

class MainWindow : public FormWindow {
 public:
  /// Hidden, it waits in the task list or is not to be seen at all.
  MainWindow(core::MainForm& form, platform::EventLoop& loop, bool hiddenWaitsInTaskList = true);

  void SetHiddenWaitsInTaskList(bool waits);

 private:
  [[nodiscard]] QWidget* MakeTools(core::MainForm& form, QWidget* parent);

  MenuBinder menus_;
};

}  // namespace tallowin::desktop
