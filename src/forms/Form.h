// A form: a named set of named controls, shown or hidden.
#pragma once

#include <functional>
#include <memory>

#include "forms/Control.h"
#include "forms/TaskBar.h"
#include "platform/EventLoop.h"

namespace tallowin::forms {

enum class MousePointer { Normal = 0, Hourglass = 11 };

enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

class MenuItem;

class Form : public Control {
 public:
  /// `name` is how front ends and users find the form. It starts hidden.
  explicit Form(std::string name);

  [[nodiscard]] std::string_view Kind() const override { return "Form"; }

  /// In the order of their declaration, which is also the tab order; containers before what they
  /// hold.
  [[nodiscard]] const std::vector<Control*>& Controls() const { return controls_; }
  /// Null if there is none. The case of the name counts.
  [[nodiscard]] Control* Find(std::string_view name) const;
  /// The items of a menu; for null, the menus of the bar.
  [[nodiscard]] std::vector<MenuItem*> ItemsOf(const Control* menu) const;

  /// Modeless. Showing a form that is visible brings it to the front again.
  void Show();
  void Hide() { SetVisible(false); }
  /// Shows the form and delivers events until it is hidden. The user can act on no other form
  /// meanwhile; front ends see to that. Throws 400 if the form is on show already.
  void ShowModal(platform::EventLoop& loop);
  /// True while the form is on show by ShowModal.
  [[nodiscard]] bool Modal() const { return modal_; }
  /// Runs OnActivate where the form was hidden.
  void SetVisible(bool visible) override;

  [[nodiscard]] WindowState State() const { return state_; }
  /// Runs OnResize.
  void SetState(WindowState state);

  /// Above all other windows.
  [[nodiscard]] bool TopMost() const { return topMost_; }
  void SetTopMost(bool topMost) { Assign(topMost_, topMost, Property::TopMost); }

  /// What the pointer looks like over the whole form.
  [[nodiscard]] forms::MousePointer MousePointer() const { return mousePointer_; }
  void SetMousePointer(forms::MousePointer pointer) {
    Assign(mousePointer_, pointer, Property::MousePointer);
  }

  /// In twips, 1440 to the inch; 0 leaves it to the front end.
  [[nodiscard]] int Height() const { return heightInTwips_; }
  void SetHeight(int twips) { heightInTwips_ = twips; }

  /// The form has come up, be it shown by code or brought back by the user.
  std::function<void()> OnActivate;
  /// The window was minimised, maximised or brought back, by the user or by code.
  std::function<void()> OnResize;
  /// The user closed the window with the window's own close box. Empty: the form is hidden.
  std::function<void()> OnCloseBox;

  /// What a press of the close box does.
  void PressCloseBox();

 private:
  friend class Control;
  void Register(Control& control) { controls_.push_back(&control); }

  std::vector<Control*> controls_;
  WindowState state_ = WindowState::Normal;
  bool topMost_ = false;
  bool modal_ = false;
  forms::MousePointer mousePointer_ = forms::MousePointer::Normal;
  int heightInTwips_ = 0;
};

/// The forms of a program, in the order in which they came into being.
class Forms {
 public:
  void Add(Form& form) { forms_.push_back(&form); }
  [[nodiscard]] const std::vector<Form*>& All() const { return forms_; }
  /// Null if there is none. The case of the name counts.
  [[nodiscard]] Form* Find(std::string_view name) const;
  /// The form that keeps the user from all others. Null if there is none.
  [[nodiscard]] const Form* OpenModal() const;

  /// Of the program whose forms these are.
  [[nodiscard]] forms::TaskBar& TaskBar() const { return *taskBar_; }

 private:
  std::vector<Form*> forms_;
  std::unique_ptr<forms::TaskBar> taskBar_ = std::make_unique<forms::TaskBar>();
};

}  // namespace tallowin::forms
