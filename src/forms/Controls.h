// The kinds of controls that forms are made of.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <vector>

#include "forms/Control.h"

namespace tallowin::forms {

/// A fixed text: its caption. Some can be clicked, as links are.
class Label : public Control {
 public:
  Label(Place place, std::string name, std::string caption)
      : Control(place, std::move(name), std::move(caption)) {}
  [[nodiscard]] std::string_view Kind() const override { return "Label"; }

  void Click();
  /// Empty where a click does nothing.
  std::function<void()> OnClick;
};

/// A captioned group that holds other controls.
class Frame : public Control {
 public:
  Frame(Place place, std::string name, std::string caption)
      : Control(place, std::move(name), std::move(caption)) {}
  [[nodiscard]] std::string_view Kind() const override { return "Frame"; }
};

/// Shows one of the pictures that the front end knows by their keys.
class PictureBox : public Control {
 public:
  PictureBox(Place place, std::string name) : Control(place, std::move(name), std::string()) {}
  [[nodiscard]] std::string_view Kind() const override { return "PictureBox"; }
  [[nodiscard]] std::string ValueText() const override { return picture_; }

  /// Empty: no picture.
  [[nodiscard]] const std::string& Picture() const { return picture_; }
  void SetPicture(std::string key) { Assign(picture_, std::move(key), Property::Value); }

  /// In twips. For what is no mouse at all, see TaskBar::Mouse.
  void MouseMove(float x);
  std::function<void(float x)> OnMouseMove;

 private:
  std::string picture_;
};

/// Pages that lie on each other, of which one is on top. Controls of all pages can be reached at
/// any time; which page holds what is up to the front end.
class SSTab : public Control {
 public:
  SSTab(Place place, std::string name, std::vector<std::string> captions)
      : Control(place, std::move(name), std::string()), captions_(std::move(captions)) {}
  [[nodiscard]] std::string_view Kind() const override { return "SSTab"; }
  [[nodiscard]] std::string ValueText() const override { return std::to_string(tab_); }

  [[nodiscard]] const std::vector<std::string>& Captions() const { return captions_; }
  /// Of the page on top, counted from 0.
  [[nodiscard]] std::size_t Tab() const { return tab_; }
  /// Throws 380 if there is no such page.
  void SetTab(std::size_t tab);

 private:
  std::vector<std::string> captions_;
  std::size_t tab_ = 0;
};

class Button : public Control {
 public:
  Button(Place place, std::string name, std::string caption)
      : Control(place, std::move(name), std::move(caption)) {}
  [[nodiscard]] std::string_view Kind() const override { return "Button"; }

  /// Runs the handler, also on a disabled button: it is front ends that keep the user from it.
  void Click();
  std::function<void()> OnClick;
};

class TextBox : public Control {
 public:
  struct Traits {
    std::string text = {};
    bool multiLine = false;
    bool locked = false;  ///< the user can read and copy, not type
    std::size_t maxLength = std::numeric_limits<std::size_t>::max();  ///< for what the user types
    /// What strangers may fill: an addition beyond it pushes out the oldest half.
    std::size_t capacity = std::numeric_limits<std::size_t>::max();
  };
  TextBox(Place place, std::string name, Traits traits);
  [[nodiscard]] std::string_view Kind() const override { return "TextBox"; }
  [[nodiscard]] std::string ValueText() const override { return text_; }

  /// Bytes; what a caller sent stands in it as it came.
  [[nodiscard]] const std::string& Text() const { return text_; }
  void SetText(std::string text);
  /// The text becomes the old text and `addition`, at the cost of the addition. Where that exceeds
  /// the capacity, the text becomes its newest half with the addition behind it, cut to the
  /// capacity.
  void AppendText(std::string_view addition);

  [[nodiscard]] bool MultiLine() const { return multiLine_; }
  [[nodiscard]] bool Locked() const { return locked_; }
  [[nodiscard]] std::size_t MaxLength() const { return maxLength_; }

  /// Where the caret stands, in bytes. The caret is kept in view.
  [[nodiscard]] std::size_t SelStart() const { return selStart_; }
  void SetSelStart(std::size_t position) { Assign(selStart_, position, Property::SelStart); }

  std::function<void()> OnChange;

 private:
  std::string text_;
  bool multiLine_;
  bool locked_;
  std::size_t maxLength_;
  std::size_t capacity_;
  std::size_t selStart_ = 0;
};

class CheckBox : public Control {
 public:
  static constexpr int Unchecked = 0;
  static constexpr int Checked = 1;
  static constexpr int Greyed = 2;

  CheckBox(Place place, std::string name, std::string caption, int value = Unchecked)
      : Control(place, std::move(name), std::move(caption)), value_(value) {}
  [[nodiscard]] std::string_view Kind() const override { return "CheckBox"; }
  [[nodiscard]] std::string ValueText() const override { return std::to_string(value_); }

  [[nodiscard]] int Value() const { return value_; }
  /// Throws 380 for a value that is none of the three.
  void SetValue(int value);

  /// Runs on each change of the value, by the user's click or by an assignment.
  std::function<void()> OnClick;

 private:
  int value_;
};

/// A list of texts that is counted from 0.
class ItemList : public Control {
 public:
  [[nodiscard]] std::size_t ListCount() const { return items_.size(); }
  /// Throws 381 for an index outside the list.
  [[nodiscard]] const std::string& List(std::size_t index) const;
  void AddItem(std::string item);
  /// Removes the items whose place in `keep` holds false, all in one step.
  void Keep(const std::vector<bool>& keep);
  void Clear();

 protected:
  using Control::Control;
  /// Items are about to go: what was said about the places of the list holds no more.
  virtual void ForgetPlaces() {}

 private:
  std::vector<std::string> items_;
};

/// A list with a text of its own, which the user may type or pick.
class ComboBox : public ItemList {
 public:
  ComboBox(Place place, std::string name, std::string text = {})
      : ItemList(place, std::move(name), std::string()), text_(std::move(text)) {}
  [[nodiscard]] std::string_view Kind() const override { return "ComboBox"; }
  [[nodiscard]] std::string ValueText() const override { return text_; }

  [[nodiscard]] const std::string& Text() const { return text_; }
  void SetText(std::string text);

  /// The user picks an entry: the text becomes that entry's, and OnClick runs.
  void Select(std::size_t index);

  std::function<void()> OnChange;
  std::function<void()> OnClick;

 private:
  std::string text_;
};

/// A list that shows its entries. Each new list of entries starts with none selected.
class ListBox : public ItemList {
 public:
  enum class Selection { One, Several };

  ListBox(Place place, std::string name, Selection selection = Selection::One)
      : ItemList(place, std::move(name), std::string()), selection_(selection) {}
  [[nodiscard]] std::string_view Kind() const override { return "ListBox"; }

  [[nodiscard]] bool TakesSeveral() const { return selection_ == Selection::Several; }
  /// The entry chosen last. Nothing while none was.
  [[nodiscard]] std::optional<std::size_t> ListIndex() const { return listIndex_; }
  /// False for an index outside the list.
  [[nodiscard]] bool Selected(std::size_t index) const { return selected_.contains(index); }

  /// By the user or by code: the entry is selected, in a list that takes several a selected one is
  /// not any more, and OnClick runs. Throws 381 for an index outside the list.
  void Select(std::size_t index) { Select(std::vector{index}); }
  /// The same for all of them in one step, with one OnClick. Throws 381 before any is selected.
  void Select(const std::vector<std::size_t>& indices);

  std::function<void()> OnClick;

 private:
  void ForgetPlaces() override;
  Selection selection_;
  std::optional<std::size_t> listIndex_;
  std::set<std::size_t> selected_;
};

struct ToolBarButton {
  std::string Key;  ///< tells the buttons of a bar apart
  std::string Caption;
};

/// A row of buttons that are enabled and disabled together.
class ToolBar : public Control {
 public:
  ToolBar(Place place, std::string name, std::vector<ToolBarButton> buttons)
      : Control(place, std::move(name), std::string()), buttons_(std::move(buttons)) {}
  [[nodiscard]] std::string_view Kind() const override { return "ToolBar"; }

  [[nodiscard]] const std::vector<ToolBarButton>& Buttons() const { return buttons_; }
  /// Counted from 1. Throws 381 for an index outside the bar.
  [[nodiscard]] const ToolBarButton& Buttons(std::size_t index) const;
  /// Null if there is none. The case of the key counts.
  [[nodiscard]] const ToolBarButton* Find(std::string_view key) const;

  /// Runs the handler, also on a disabled bar: it is front ends that keep the user from it.
  void Click(const ToolBarButton& button);
  /// Throws 381 if there is no such button.
  void Click(std::string_view key);
  std::function<void(const ToolBarButton&)> OnButtonClick;

 private:
  std::vector<ToolBarButton> buttons_;
};

/// An item of a menu, a menu that holds items, or a separator between them.
class MenuItem : public Control {
 public:
  /// `shortcut` is the key that chooses the item from anywhere in the form, "F1" for example.
  MenuItem(Place place, std::string name, std::string caption, std::string shortcut = {})
      : Control(place, std::move(name), std::move(caption)), shortcut_(std::move(shortcut)) {}
  [[nodiscard]] std::string_view Kind() const override { return "MenuItem"; }
  [[nodiscard]] std::string ValueText() const override { return checked_ ? "checked" : ""; }

  [[nodiscard]] const std::string& Shortcut() const { return shortcut_; }
  [[nodiscard]] bool IsSeparator() const { return Caption() == "-"; }

  [[nodiscard]] bool Checked() const { return checked_; }
  void SetChecked(bool checked) { Assign(checked_, checked, Property::Value); }

  /// Runs the handler, also on a disabled item: it is front ends that keep the user from it.
  void Click();
  std::function<void()> OnClick;

 private:
  std::string shortcut_;
  bool checked_ = false;
};

}  // namespace tallowin::forms
