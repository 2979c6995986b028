// Echoes over this system's sockets.
#pragma once

#include "platform/Icmp.h"

namespace tallowin::platform::linux_host {

/// Each echo has a socket of its own, so that no answer to an earlier one can be taken for its own
/// and a handle that stays open holds nothing.
class LinuxIcmp : public Icmp {
 public:
  Handle IcmpCreateFile() override { return 1; }
  std::uint32_t IcmpSendEcho(Handle handle, std::int32_t destination, std::string_view data,
                             int ttl, IcmpEchoReply& reply, std::size_t replySize,
                             std::chrono::milliseconds timeout) override;
  bool IcmpCloseHandle(Handle) override { return true; }
};

}  // namespace tallowin::platform::linux_host
