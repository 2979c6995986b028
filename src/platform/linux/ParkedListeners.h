// Listening descriptors of sockets that were closed a moment ago.
#pragma once

#include <chrono>
#include <list>
#include <memory>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

/// A port that is refused by Close and opened again by Listen would lose the callers who are in the
/// system's queue in between. So the descriptor is kept for a moment, unwatched, and in any case
/// until the handler that closed it is through: events that run nested in it may take long.
class ParkedListeners {
 public:
  using Owner = const void*;
  explicit ParkedListeners(LinuxEventLoop& loop);

  /// `portAskedFor` may be 0, `portInUse` is the one that the system chose then.
  void Park(Owner owner, int portAskedFor, int portInUse, FileDescriptor socket);

  /// The descriptor that listens on `port`, whoever parked it; for port 0 the one for which this
  /// owner asked so. Empty if there is none.
  [[nodiscard]] FileDescriptor TakeBack(Owner owner, int port);

  /// Closes what the owner has parked.
  void Drop(Owner owner);

 private:
  using Clock = std::chrono::steady_clock;
  struct Entry {
    Owner owner;
    int portAskedFor;
    int portInUse;
    FileDescriptor socket;
    Clock::time_point until;
    int nesting;  ///< of the handler that closed it
  };
  void DropOverdue();

  LinuxEventLoop& loop_;
  std::list<Entry> entries_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace tallowin::platform::linux_host
