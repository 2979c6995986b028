// Long texts in message boxes.
#pragma once

#include <QMessageBox>

namespace tallowin::desktop {

/// A message box's own label breaks lines early, cuts off a word that is wider than the box, and
/// grows beyond the screen. A text of more than a few lines is shown in a view instead that keeps
/// the lines whole as far as they fit, breaks long words and scrolls; like the label, it can be
/// selected and copied and shows plain text. To be called when the text and the buttons are set.
void GiveRoom(QMessageBox& box);

}  // namespace tallowin::desktop
