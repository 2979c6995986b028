// A row of sockets that come and go by index.
#pragma once

#include <array>
#include <functional>
#include <memory>

#include "core/PortSettings.h"
#include "platform/Winsock.h"

namespace tallowin::portsentry {

/// Elements 1 to 15, each belonging to the slot of its number; none is there at first.
class SocketArray {
 public:
  /// `eventsOf` gives the events of the element that is being loaded.
  SocketArray(platform::SocketFactory& factory,
              std::function<platform::SocketEvents(int index)> eventsOf)
      : factory_(factory), eventsOf_(std::move(eventsOf)) {}

  /// Throws RunTimeError 360 if the element is there already.
  void Load(int index);
  /// Whatever the socket was doing ends without an event. Throws 340 if the element is not there.
  void Unload(int index);
  /// Throws 340 if the element is not there.
  [[nodiscard]] platform::Winsock& operator()(int index) const;

 private:
  platform::SocketFactory& factory_;
  std::function<platform::SocketEvents(int)> eventsOf_;
  std::array<std::unique_ptr<platform::Winsock>, core::kLastSlot + 1> elements_;
};

}  // namespace tallowin::portsentry
