// Ties controls to widgets: the widget shows the control, the user's hand changes the control.
#pragma once

#include <functional>
#include <vector>

#include "forms/Controls.h"
#include "platform/EventLoop.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace tallowin::desktop {

class TextView;
class ToolBarView;

/// Widgets take their object name from the control, so that they can be found by it. Each bound
/// widget must have a parent, and live as long as the binder does.
class Binder {
 public:
  explicit Binder(platform::EventLoop& loop) : loop_(loop) {}

  /// The label names `buddy` to screen readers, and its access key goes there.
  void Bind(forms::Label& control, QLabel& label, QWidget& buddy);
  /// One that names nothing but itself.
  void Bind(forms::Label& control, QLabel& label);
  void Bind(forms::Frame& control, QGroupBox& box);
  void Bind(forms::Button& control, QPushButton& button);
  void Bind(forms::TextBox& control, QLineEdit& edit);
  void Bind(forms::TextBox& control, TextView& view);
  /// Enables and disables the whole bar; its buttons are the view's own affair.
  void Bind(forms::ToolBar& control, ToolBarView& view);
  /// `box` must be editable.
  void Bind(forms::ComboBox& control, QComboBox& box);

  /// Keeps an observation of `control` for as long as the binder lives.
  void Observe(forms::Control& control, forms::Observer observer);

  /// Runs something that the user did as an event of the program.
  void Deliver(const std::function<void()>& action) { loop_.Deliver(action); }

 private:
  /// Observes `control` for what all widgets show alike, and tells `observer` as well.
  void BindCommon(forms::Control& control, QWidget& widget, forms::Observer observer);

  platform::EventLoop& loop_;
  std::vector<forms::Observation> observations_;
};

}  // namespace tallowin::desktop
