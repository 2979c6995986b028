// Sees off connections that the program has closed.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <string>

#include "platform/EventLoop.h"
#include "platform/linux/EventPoller.h"

namespace tallowin::platform::linux_host {

/// Sends what is still queued, then says the end, and reads away what the peer still sends until
/// the peer ends too. To close a descriptor at once would answer such bytes by a reset, which can
/// cost the peer the text that is on its way to it. All of it is bounded: in time, in number and in
/// bytes.
class LingeringSender {
 public:
  LingeringSender(EventLoop& loop, EventPoller& poller);
  ~LingeringSender();

  void SeeOff(FileDescriptor socket, std::string unsent);

  /// Gives the oldest farewell up, if there is one.
  void DropOldest();

 private:
  using Clock = std::chrono::steady_clock;
  struct Farewell;
  using Farewells = std::list<Farewell>;

  void OnReady(Farewells::iterator farewell, Readiness ready);
  void MakeRoom();
  void DropOverdue();

  EventPoller& poller_;
  std::unique_ptr<Timer> timer_;
  Farewells farewells_;  ///< oldest first
};

}  // namespace tallowin::platform::linux_host
