// A combo box whose text the user picks and does not type.

#include <QComboBox>
#include <QSignalBlocker>

#include "desktop/Binder.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

void ShowItems(const forms::ComboBox& control, QComboBox& box) {
  const QSignalBlocker quiet(box);
  box.clear();
  for (std::size_t i = 0; i < control.ListCount(); ++i) box.addItem(ToQString(control.List(i)));
}

/// A text that is none of the entries stands in the box all the same, with no entry chosen.
void ShowChoice(const forms::ComboBox& control, QComboBox& box) {
  const QSignalBlocker quiet(box);
  std::size_t chosen = 0;
  while (chosen < control.ListCount() && control.List(chosen) != control.Text()) ++chosen;
  const bool listed = chosen < control.ListCount();
  box.setPlaceholderText(listed ? QString() : ToQString(control.Text()));
  box.setCurrentIndex(listed ? static_cast<int>(chosen) : -1);
}

}  // namespace

void Binder::BindChoice(forms::ComboBox& control, QComboBox& box) {
  using forms::Property;
  BindCommon(control, box, [&control, &box](const forms::Change& change) {
    const bool items = change.property == Property::AddedItem ||
                       change.property == Property::Items ||
                       change.property == Property::Everything;
    if (items) ShowItems(control, box);
    if (items || change.property == Property::Text) ShowChoice(control, box);
  });
  QObject::connect(&box, &QComboBox::activated, &box, [this, &control](int index) {
    const auto row = static_cast<std::size_t>(index);
    if (row < control.ListCount()) Deliver([&] { control.Select(row); });
  });
}

}  // namespace tallowin::desktop
