// What every control has: a name, a caption, a state, and observers.
#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin::forms {

class Form;

/// What an observer is told of. Everything is told once, at the start of an observation: the
/// observer then takes the whole state from the control.
enum class Property {
  Everything,
  Caption,
  ToolTip,
  Enabled,
  Visible,
  Text,          ///< the text is another one
  AppendedText,  ///< Change::addition was added to the end of the text
  Value,         ///< a check box's value, a menu item's tick
  AddedItem,     ///< Change::addition was added to the end of the list
  Items,         ///< the list changed in another way
  Row,           ///< the texts of row Change::row changed
  Columns,       ///< a column was added
  SelStart,
  Focus,  ///< the control asks for the keyboard
  WindowState,
  TopMost,
  MousePointer,
};

struct Change {
  Property property;
  std::string_view addition = {};
  std::size_t row = 0;
};

using Observer = std::function<void(const Change&)>;

/// Ends its observation when it is dropped: from then on the observer is told nothing. May outlive
/// the control.
using Observation = std::shared_ptr<void>;

class Control;

/// Where a control stands: on the form itself, or in one of its frames or menus.
struct Place {
  Place(Form& on) : form(&on) {}  // NOLINT(google-explicit-constructor): reads as the place
  Place(Control& in);             // NOLINT(google-explicit-constructor)
  Form* form;
  Control* container = nullptr;
};

/// A setter returns at once where nothing changes; otherwise it changes the state, then tells the
/// observers, then runs the control's handler, all before it returns. Controls are members of their
/// form, are known to it from their construction on, and live as long as it does.
class Control {
 public:
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] virtual std::string_view Kind() const = 0;

  /// What a user would read off the control, besides its caption; empty for controls without it.
  [[nodiscard]] virtual std::string ValueText() const { return {}; }

  /// "&" stands before the access key, as in "E&xit".
  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);

  [[nodiscard]] const std::string& ToolTip() const { return toolTip_; }
  void SetToolTip(std::string toolTip);

  [[nodiscard]] bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);

  [[nodiscard]] bool Visible() const { return visible_; }
  virtual void SetVisible(bool visible);

  /// The frame or menu that holds this control; null for one that stands on the form itself.
  [[nodiscard]] const Control* Container() const { return container_; }

  /// True if a user could act on it: it and every container are enabled and visible. The form
  /// around them need not be on show.
  [[nodiscard]] bool Usable() const;

  /// Asks the front end to give this control the keyboard.
  void SetFocus() { Notify({Property::Focus}); }

  /// Tells `observer` Everything at once, and each change from then on, until the result is
  /// dropped. An observer may change controls and may end observations.
  [[nodiscard]] Observation Observe(Observer observer);

 protected:
  /// Makes the control known to its form.
  Control(Place place, std::string name, std::string caption);

  void Notify(const Change& change);

  /// Sets `field` and notifies; false if the value was there already.
  template <typename T>
  bool Assign(T& field, T value, Property property) {
    if (field == value) return false;
    field = std::move(value);
    Notify({property});
    return true;
  }

 private:
  friend class Form;
  friend struct Place;
  /// For forms, which stand nowhere.
  explicit Control(std::string name) : name_(std::move(name)) {}

  Form* form_ = nullptr;
  Control* container_ = nullptr;
  std::string name_;
  std::string caption_;
  std::string toolTip_;
  bool enabled_ = true;
  bool visible_ = true;
  struct Watch {
    Observer observer;
    bool ended = false;
  };
  std::list<std::shared_ptr<Watch>> watches_;
  int notifying_ = 0;
};

}  // namespace tallowin::forms
