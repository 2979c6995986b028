// Sockets on the system's own, watched by the event loop.
#pragma once

#include <memory>

#include "platform/UdpWinsock.h"
#include "platform/Winsock.h"
#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

class PrivilegedHelper;
struct SocketServices;

/// The loop outlives the sockets. Sockets may outlive the factory.
class LinuxSocketFactory final : public SocketFactory {
 public:
  /// `helper` opens ports that this user may not open; null for none. It must outlive the factory.
  explicit LinuxSocketFactory(LinuxEventLoop& loop, const PrivilegedHelper* helper = nullptr);
  std::unique_ptr<Winsock> MakeWinsock() override;
  std::unique_ptr<UdpWinsock> MakeUdpWinsock() override;

 private:
  std::shared_ptr<SocketServices> services_;
};

}  // namespace tallowin::platform::linux_host
