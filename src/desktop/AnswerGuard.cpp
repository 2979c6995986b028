#include "desktop/AnswerGuard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

namespace tallowin::desktop {

namespace {

bool IsBareLetter(const QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  const bool bare = (key.modifiers() & (Qt::AltModifier | Qt::ControlModifier)) == 0;
  return bare && !key.text().isEmpty() && key.text().front().isLetterOrNumber();
}

}  // namespace

AnswerGuard::AnswerGuard(QMessageBox& box) : QObject(&box), box_(box) {
  setObjectName("AnswerGuard");
  shown_.start();
  quiet_.start();
  // Keys reach the window first and its focused widget then; shortcuts reach the button straight.
  QApplication::instance()->installEventFilter(this);
}

bool AnswerGuard::eventFilter(QObject* watched, QEvent* event) {
  if (!IsOfBox(watched)) return false;
  switch (event->type()) {
    case QEvent::WindowActivate:
      quiet_.restart();
      return false;
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
      return !TakesKey(*event);
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      return !shown_.hasExpired(kClicklessMilliseconds);
    default:
      return false;
  }
}

bool AnswerGuard::IsOfBox(const QObject* watched) const {
  if (watched->isWidgetType()) return static_cast<const QWidget*>(watched)->window() == &box_;
  return watched->isWindowType() && watched == box_.windowHandle();
}

bool AnswerGuard::TakesKey(const QEvent& event) {
  if (Armed()) return !IsBareLetter(event);
  quiet_.restart();
  return false;
}

}  // namespace tallowin::desktop
