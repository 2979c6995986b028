// How long the registry waits for a store that another process keeps locked.
#pragma once

#include <chrono>

namespace tallowin::platform::linux_host {

/// Another process holds a lock for the time of one small write; whoever holds it for longer hangs,
/// and the program must not hang with it. Once a wait was in vain, locks are not waited for until a
/// second has passed: a click on OK writes 150 values.
class LockPatience {
 public:
  /// For whoever has found a lock taken: waits a moment and gives true if the lock is to be tried
  /// again. `earlierCalls` counts the calls for the same lock at the same time, from 0.
  [[nodiscard]] bool Wait(int earlierCalls);

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point deadline_;
  Clock::time_point noWaitBefore_;
};

}  // namespace tallowin::platform::linux_host
