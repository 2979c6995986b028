#include "desktop/LinkLabel.h"

#include <QApplication>
#include <QMouseEvent>

namespace tallowin::desktop {

LinkLabel::LinkLabel(forms::Label& control, Binder& binder, QWidget* parent)
    : QLabel(parent), control_(control), binder_(binder) {
  QFont underlined = font();
  underlined.setUnderline(true);
  setFont(underlined);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::StrongFocus);
  // As wide as its text, so that what is clicked is the text and the frame of the focus fits it.
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  TakeColour();
  binder.Bind(control, *this);
}

void LinkLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) Click();
}

void LinkLabel::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
    Click();
  } else {
    QLabel::keyPressEvent(event);
  }
}

void LinkLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::ApplicationPaletteChange) TakeColour();
}

void LinkLabel::Click() {
  binder_.Deliver([this] { control_.Click(); });
}

void LinkLabel::TakeColour() {
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, QApplication::palette().color(QPalette::Link));
  setPalette(colours);
}

}  // namespace tallowin::desktop
