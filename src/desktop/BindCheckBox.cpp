// A box that the user ticks.

#include <QCheckBox>
#include <QSignalBlocker>

#include "desktop/Binder.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

Qt::CheckState StateOf(const forms::CheckBox& control) {
  if (control.Value() == forms::CheckBox::Greyed) return Qt::PartiallyChecked;
  return control.Value() == forms::CheckBox::Checked ? Qt::Checked : Qt::Unchecked;
}

void ShowTick(const forms::CheckBox& control, QCheckBox& box) {
  const QSignalBlocker quiet(box);
  box.setCheckState(StateOf(control));
}

}  // namespace

void Binder::Bind(forms::CheckBox& control, QCheckBox& box) {
  using forms::Property;
  BindCommon(control, box, [&control, &box](const forms::Change& change) {
    const bool everything = change.property == Property::Everything;
    if (everything || change.property == Property::Caption)
      box.setText(ToQString(control.Caption()));
    if (everything || change.property == Property::Value) ShowTick(control, box);
  });
  // The third state is one that only the program gives a box. What the handler makes of the click
  // decides what is shown.
  QObject::connect(&box, &QCheckBox::clicked, &box, [this, &control, &box] {
    using forms::CheckBox;
    const bool ticked = control.Value() == CheckBox::Unchecked;
    Deliver([&] { control.SetValue(ticked ? CheckBox::Checked : CheckBox::Unchecked); });
    ShowTick(control, box);
  });
}

}  // namespace tallowin::desktop
