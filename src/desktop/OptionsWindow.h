// The window in which the user sets everything.
#pragma once

#include "core/Options.h"
#include "desktop/FormWindow.h"

class QGroupBox;
class QGridLayout;
class QPushButton;

namespace tallowin::desktop {

/// Enter is OK, but for the text of several lines and for another button that has the keyboard.
/// Alt with the arrow keys goes from slot to slot.
class OptionsWindow : public FormWindow {
 public:
  OptionsWindow(core::Options& form, platform::EventLoop& loop);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] QWidget* MakeGeneralPage(QWidget* parent);
  [[nodiscard]] QGroupBox* MakeServices(QWidget* parent);
  [[nodiscard]] QGroupBox* MakeAdvanced(QWidget* parent);
  [[nodiscard]] QGroupBox* MakeOtherDetails(QWidget* parent);
  [[nodiscard]] QWidget* MakePortPage(QWidget* parent);
  [[nodiscard]] QWidget* MakeSlotButtons(QWidget* parent);
  void AddSocket(QWidget* parent, QGridLayout& grid);
  [[nodiscard]] QGroupBox* MakeAttempt(QWidget* parent);
  [[nodiscard]] QGroupBox* MakeResponses(QWidget* parent);
  [[nodiscard]] QWidget* MakeButtons(QWidget* parent);

  core::Options& form_;
  QPushButton* ok_ = nullptr;
};

}  // namespace tallowin::desktop
