#include "desktop/NeverBlocked.h"

#include <QEvent>
#include <QGuiApplication>

namespace tallowin::desktop {

NeverBlocked::NeverBlocked(QWindow& window) : QObject(&window), window_(window) {
  window_.installEventFilter(this);
  window_.setTransientParent(QGuiApplication::modalWindow());
}

bool NeverBlocked::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::WindowBlocked) {
    window_.setTransientParent(QGuiApplication::modalWindow());
  }
  return false;
}

}  // namespace tallowin::desktop
