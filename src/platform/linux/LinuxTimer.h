// A repeating timer on the toolkit's clockwork.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/EventLoop.h"

namespace tallowin::platform::linux_host {

class LinuxTimer final : public Timer {
 public:
  LinuxTimer(EventLoop& loop, std::chrono::milliseconds interval, std::function<void()> tick);
  ~LinuxTimer() override;

  void SetEnabled(bool enabled) override;
  [[nodiscard]] bool Enabled() const override;

 private:
  /// Outlives the timer for as long as a tick of it is under way or posted.
  struct Clockwork;
  std::shared_ptr<Clockwork> clockwork_;
};

}  // namespace tallowin::platform::linux_host
