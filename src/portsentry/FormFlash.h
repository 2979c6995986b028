// The timer that makes the warning window blink.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/EventLoop.h"
#include "portsentry/BigMSG.h"

namespace tallowin::portsentry {

/// Shows the window three times, at the pace of one change in 1.2 seconds, and hides it for good.
class FormFlash {
 public:
  FormFlash(BigMSG& window, platform::EventLoop& loop);

  /// Begins a series. In the middle of one it lengthens that: the blinking goes on from the present
  /// state for the time of a whole series.
  void Start();

 private:
  void Tick();

  BigMSG& window_;
  std::unique_ptr<platform::Timer> timer_;
  std::int16_t flashCount_ = 0;
};

}  // namespace tallowin::portsentry
