// A window that shows a form.
#pragma once

#include <QMainWindow>

#include "desktop/Binder.h"
#include "forms/Form.h"

namespace tallowin::desktop {

/// Keeps window and form in step: title, shown or hidden, minimised, topmost, modal, busy. While a
/// form is modal its window stands over the one that the user was at, and Escape closes it. The
/// content is added by the classes derived from it, which call `Follow` when it stands.
class FormWindow : public QMainWindow {
 protected:
  enum class WhenHidden {
    Hide,
    /// In the task list, so that there is a way back to it.
    WaitMinimised,
  };
  enum class WhenShown {
    TakeKeyboard,
    /// The window is seen, but someone who is typing elsewhere is left in peace.
    LeaveKeyboard,
  };

  FormWindow(forms::Form& form, platform::EventLoop& loop, WhenHidden whenHidden,
             WhenShown whenShown);

  void Follow();
  /// Holds at once for a window that is hidden now.
  void SetWhenHidden(WhenHidden whenHidden);
  [[nodiscard]] Binder& Bindings() { return binder_; }
  /// A small or magnified screen makes it smaller.
  void ResizeWithinScreen(QSize wanted);
  /// In pixels; 0 if the form leaves it to the window.
  [[nodiscard]] int HeightOfForm() const;

  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Apply(const forms::Change& change);
  void ShowAsForm();
  /// Before the window comes up.
  void TakeModality();
  void BringToFront();
  void SetTopMost(bool topMost);
  void TakeStateOfWindow();
  void TakeBack();

  forms::Form& form_;
  platform::EventLoop& loop_;
  WhenHidden whenHidden_;
  WhenShown whenShown_;
  Binder binder_;
  bool applying_ = false;
  bool takingBack_ = false;  ///< the user has brought the window back, and the form follows
};

}  // namespace tallowin::desktop
