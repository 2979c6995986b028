// The main window: menu bar, status log, the callers' addresses and the tools for them.
#pragma once

#include "core/MainForm.h"
#include "desktop/FormWindow.h"
#include "desktop/MenuBinder.h"

namespace tallowin::desktop {

class MainWindow : public FormWindow {
 public:
  MainWindow(core::MainForm& form, platform::EventLoop& loop);

 private:
  [[nodiscard]] QWidget* MakeTools(core::MainForm& form, QWidget* parent);

  MenuBinder menus_;
};

}  // namespace tallowin::desktop
