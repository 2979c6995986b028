// The signals by which the system asks a program to end, as something that can be waited for.
#pragma once

#include <csignal>
#include <functional>
#include <memory>

#include "platform/linux/EventPoller.h"

namespace tallowin::platform::linux_host {

/// Catches SIGTERM, SIGINT and SIGHUP for as long as it lives; SIGHUP stays ignored where the
/// program was started so (nohup). Child processes do not inherit it. With several in one process,
/// each is told.
class TerminationSignals {
 public:
  /// `requested` is called from `poller`; signals that come close together count as one.
  TerminationSignals(EventPoller& poller, std::function<void()> requested);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

 private:
  FileDescriptor wake_;
  std::unique_ptr<EventPoller::Watch> watch_;
};

/// Lets a write to a closed pipe fail instead of ending the process. A handler that does nothing is
/// used rather than SIG_IGN, because child processes would inherit the latter.
void PassOverBrokenPipes();

}  // namespace tallowin::platform::linux_host
