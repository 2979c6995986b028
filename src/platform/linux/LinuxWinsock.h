// Sockets on the system's own, watched by the event loop.
#pragma once

#include <memory>

#include "platform/Winsock.h"
#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

struct SocketServices;

/// The loop outlives the sockets. Sockets may outlive the factory.
class LinuxSocketFactory final : public SocketFactory {
 public:
  explicit LinuxSocketFactory(LinuxEventLoop& loop);
  std::unique_ptr<Winsock> MakeWinsock() override;

 private:
  std::shared_ptr<SocketServices> services_;
};

}  // namespace tallowin::platform::linux_host
