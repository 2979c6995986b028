// The blinking warning, to be seen from across the room.
#pragma once

#include "desktop/FormWindow.h"
#include "portsentry/BigMSG.h"

class QLabel;

namespace tallowin::desktop {

/// White on red in the middle of the screen, above all other windows. It takes neither the keyboard
/// nor a place in the task list, since it goes away by itself.
class BigMSGView : public FormWindow {
 public:
  BigMSGView(portsentry::BigMSG& form, platform::EventLoop& loop);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  [[nodiscard]] QWidget* MakeContent(portsentry::BigMSG& form);
  void FitToScreen();

  QLabel* title_ = nullptr;
  QLabel* warning_ = nullptr;
};

}  // namespace tallowin::desktop
