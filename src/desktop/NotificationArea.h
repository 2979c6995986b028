// Where this desktop shows the icons of programs.
#pragma once

#include <functional>

#include "desktop/EmbedderWatch.h"
#include "desktop/StatusNotifierWatch.h"

namespace tallowin::desktop {

class NotificationArea {
 public:
  enum class Kind {
    None,
    Announced,  ///< on the message bus; most hosts show an icon's menu by themselves
    Embedded,   ///< as a window in the panel's
  };

  /// `changed` runs when Kind gives something else. A panel may come up after the programs that the
  /// session starts, and may end and come up again.
  explicit NotificationArea(const std::function<void()>& changed)
      : statusNotifiers_(changed), embedder_(changed) {}

  [[nodiscard]] Kind Present() const;

  /// The toolkit decides once in a process, when it makes its first icon, which of the two ways it
  /// takes. To be called before that; from then on the other way does not count.
  void Settle();

 private:
  [[nodiscard]] Kind Choice() const;

  StatusNotifierWatch statusNotifiers_;
  EmbedderWatch embedder_;
  Kind settled_ = Kind::None;
};

}  // namespace tallowin::desktop
