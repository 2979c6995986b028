#include "desktop/NotificationArea.h"

namespace tallowin::desktop {

NotificationArea::Kind NotificationArea::Present() const {
  const Kind kind = settled_ == Kind::None ? Choice() : settled_;
  const bool there = kind == Kind::Announced ? statusNotifiers_.HostRuns()
                                             : kind == Kind::Embedded && embedder_.Runs();
  return there ? kind : Kind::None;
}

void NotificationArea::Settle() {
  if (settled_ == Kind::None) settled_ = Choice();
}

NotificationArea::Kind NotificationArea::Choice() const {
  if (statusNotifiers_.HostRuns()) return Kind::Announced;
  return embedder_.Runs() ? Kind::Embedded : Kind::None;
}

}  // namespace tallowin::desktop
