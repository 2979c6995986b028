// What the sockets of one program share.
#pragma once

#include "platform/linux/LingeringSender.h"
#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/ParkedListeners.h"
#include "platform/linux/PendingCallers.h"
#include "platform/linux/PrivilegedHelper.h"

namespace tallowin::platform::linux_host {

struct SocketServices {
  SocketServices(LinuxEventLoop& eventLoop, const PrivilegedHelper* privilegedHelper)
      : loop(eventLoop),
        helper(privilegedHelper),
        parked(eventLoop),
        lingering(eventLoop, eventLoop.Poller()) {}

  /// Gives up one descriptor for the next caller: that of the oldest caller held, or else that of
  /// the oldest farewell. Nobody who is being served loses anything.
  void MakeRoom() {
    if (!callers.ResetOldestHandled()) lingering.DropOldest();
  }

  LinuxEventLoop& loop;
  const PrivilegedHelper* helper;  ///< null where there is none
  PendingCallers callers;
  ParkedListeners parked;
  LingeringSender lingering;
};

}  // namespace tallowin::platform::linux_host
