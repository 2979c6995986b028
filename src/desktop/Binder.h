// Ties controls to widgets: the widget shows the control, the user's hand changes the control.
#pragma once

#include <functional>
#include <vector>

#include "forms/Controls.h"
#include "forms/ListView.h"
#include "platform/EventLoop.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListView;
class QPixmap;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class QWidget;

namespace tallowin::desktop {

class TableView;
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
  void Bind(forms::CheckBox& control, QCheckBox& box);
  void Bind(forms::TextBox& control, QLineEdit& edit);
  void Bind(forms::TextBox& control, TextView& view);
  /// For several lines that the user may type into. They end in CR LF in the control once the user
  /// has changed them. Tab goes on to the next widget.
  void Bind(forms::TextBox& control, QPlainTextEdit& edit);
  /// Pictures come from the resources, as ":/pictures/KEY-SIZE.png" for the sizes 32, 48, 64, 96
  /// and 128; `size` is the one on show at 100 %.
  void Bind(forms::PictureBox& control, QLabel& label, int size);
  /// Enables and disables the whole bar; its buttons are the view's own affair.
  void Bind(forms::ToolBar& control, ToolBarView& view);
  void Bind(forms::ListView& control, TableView& view);
  /// The pages must have been added, in the order of the captions.
  void Bind(forms::SSTab& control, QTabWidget& tabs);
  /// `picture` gives what is to be shown for a key that is not empty.
  void Bind(forms::PictureBox& control, QLabel& label,
            std::function<QPixmap(const std::string& key)> picture);
  /// `box` must be editable.
  void Bind(forms::ComboBox& control, QComboBox& box);
  /// `box` must not be editable: the user picks an entry.
  void BindChoice(forms::ComboBox& control, QComboBox& box);

  /// Entries are chosen in the view as the control says, one or several.
  void Bind(forms::ListBox& control, QListView& view);

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
