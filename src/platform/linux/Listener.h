// A listening descriptor and its callers.
#pragma once

#include <functional>
#include <memory>

#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/PendingCallers.h"

namespace tallowin::platform::linux_host {

/// Opens `port` on all addresses; 0 lets the system choose. Throws RunTimeError.
[[nodiscard]] FileDescriptor OpenListeningSocket(int port);

/// Takes callers from the system, one for each event.
class Listener {
 public:
  Listener(LinuxEventLoop& loop, FileDescriptor socket, std::function<void(Caller)> onCaller);

  [[nodiscard]] int Port() const;

  /// Ends the listening without closing the descriptor.
  [[nodiscard]] FileDescriptor Release();

 private:
  void TakeCaller();
  void Pause();
  void Resume();

  LinuxEventLoop& loop_;
  FileDescriptor socket_;
  std::function<void(Caller)> onCaller_;
  std::unique_ptr<EventPoller::Watch> watch_;
  std::unique_ptr<Timer> pause_;
};

}  // namespace tallowin::platform::linux_host
