// The address of a host's name, off the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/linux/LinuxEventLoop.h"

class QObject;

namespace tallowin::platform::linux_host {

/// Destroying it gives the look-up up: nothing is told then.
class HostLookUp {
 public:
  /// The first IPv4 address; empty if there is none. May destroy the look-up.
  using Found = std::function<void(const std::string& address)>;

  /// `found` is called in a later pass of the loop.
  HostLookUp(LinuxEventLoop& loop, const std::string& host, Found found);
  HostLookUp(const HostLookUp&) = delete;
  HostLookUp& operator=(const HostLookUp&) = delete;
  ~HostLookUp();

 private:
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
  std::unique_ptr<QObject> receiver_;
};

}  // namespace tallowin::platform::linux_host
