// Echoes over this system's sockets.
#pragma once

#include "platform/Icmp.h"
#include "platform/linux/EchoSocket.h"

namespace tallowin::platform::linux_host {

/// One socket for all echoes, opened for the first one: a handle that stays open holds nothing.
class LinuxIcmp : public Icmp {
 public:
  /// `helper` opens what this user may not; null for none. It must outlive this.
  explicit LinuxIcmp(const PrivilegedHelper* helper = nullptr) : socket_(helper) {}

  Handle IcmpCreateFile() override { return 1; }
  std::uint32_t IcmpSendEcho(Handle handle, std::int32_t destination, std::string_view data,
                             int ttl, IcmpEchoReply& reply, std::size_t replySize,
                             std::chrono::milliseconds timeout) override;
  bool IcmpCloseHandle(Handle) override { return true; }

 private:
  EchoSocket socket_;
};

}  // namespace tallowin::platform::linux_host
