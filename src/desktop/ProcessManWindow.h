// The window of the process manager.
#pragma once

#include "analysis/ProcessManFrm.h"
#include "desktop/FormWindow.h"

namespace tallowin::desktop {

class ProcessManWindow : public FormWindow {
 public:
  ProcessManWindow(analysis::ProcessManFrm& form, platform::EventLoop& loop);

 private:
  [[nodiscard]] QWidget* MakeTables(analysis::ProcessManFrm& form, QWidget* parent);
  [[nodiscard]] QWidget* MakeTable(forms::Frame& frame, forms::ListView& list, QWidget* parent);
  [[nodiscard]] QWidget* MakeTicks(analysis::ProcessManFrm& form, QWidget* parent);
};

}  // namespace tallowin::desktop
