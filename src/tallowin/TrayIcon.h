// The icon in the notification area, and what the mouse does there.
#pragma once

#include <cstdint>
#include <functional>

#include "core/Form1.h"
#include "core/MainForm.h"
#include "core/TallowinModule.h"
#include "forms/Questions.h"
#include "forms/TaskBar.h"

namespace tallowin {

class TrayIcon {
 public:
  struct Parts {
    core::Form1& form1;
    core::MainForm& mainForm;
    forms::TaskBar& taskBar;
    const core::TallowinModule& module;
    forms::Questions& questions;
  };
  TrayIcon(Parts parts, std::function<void()> restoreMainWindow);

  /// Adds the icon. Nobody looks whether that succeeded.
  void Form1_Load();
  void Form1_QueryUnload();
  /// With the record of Form1_Load, or with an empty one where the icon was never added.
  void Delete();

 private:
  void pichook_MouseMove(float x);
  void Act(std::int32_t message);
  void ChosenByThePanel(forms::MenuItem& item);

  Parts parts_;
  std::function<void()> restoreMainWindow_;
  /// Events run on while the menu is open; a second message must not get in between.
  bool busy_ = false;
  std::int32_t message_ = 0;
};

}  // namespace tallowin
