// A row of sockets that come and go by index.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "core/PortSettings.h"
#include "platform/Winsock.h"

namespace tallowin::core {

/// Elements from 1 on; none is there at first.
class SocketArray {
 public:
  /// `eventsOf` gives the events of the element that is being loaded. `last` is the highest index;
  /// by default each element belongs to the slot of its number.
  SocketArray(platform::SocketFactory& factory,
              std::function<platform::SocketEvents(int index)> eventsOf, int last = kLastSlot)
      : factory_(factory),
        eventsOf_(std::move(eventsOf)),
        elements_(static_cast<std::size_t>(last) + 1) {}

  /// Throws RunTimeError 360 if the element is there already.
  void Load(int index);
  /// Whatever the socket was doing ends without an event. Throws 340 if the element is not there.
  void Unload(int index);
  /// Throws 340 if the element is not there.
  [[nodiscard]] platform::Winsock& operator()(int index) const;

 private:
  platform::SocketFactory& factory_;
  std::function<platform::SocketEvents(int)> eventsOf_;
  std::vector<std::unique_ptr<platform::Winsock>> elements_;
};

}  // namespace tallowin::core
