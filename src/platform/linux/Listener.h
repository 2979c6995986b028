// A listening descriptor and its callers.
#pragma once

#include <functional>
#include <memory>

#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/PendingCallers.h"
#include "platform/linux/PrivilegedHelper.h"

namespace tallowin::platform::linux_host {

/// Opens `port` on all addresses; 0 lets the system choose. What this user may not open, the helper
/// is asked for, where there is one. Throws RunTimeError.
[[nodiscard]] FileDescriptor OpenListeningSocket(int port, const PrivilegedHelper* helper);

/// Takes callers from the system, one for each event.
class Listener {
 public:
  /// `caller` and `failed` may destroy the listener. After `failed` none follows.
  struct Events {
    std::function<void(Caller)> caller;
    /// The system is short of descriptors or memory. The caller waits; what is given up now is
    /// there for it in a moment.
    std::function<void()> runningShort;
    std::function<void(const RunTimeError&)> failed;
  };

  Listener(LinuxEventLoop& loop, FileDescriptor socket, Events events);

  [[nodiscard]] int Port() const;

  /// Ends the listening without closing the descriptor.
  [[nodiscard]] FileDescriptor Release();

 private:
  void TakeCaller();
  void NoCaller(int error);
  void Pause();
  void Resume();

  LinuxEventLoop& loop_;
  FileDescriptor socket_;
  Events events_;
  std::unique_ptr<EventPoller::Watch> watch_;
  std::unique_ptr<Timer> pause_;
};

}  // namespace tallowin::platform::linux_host
