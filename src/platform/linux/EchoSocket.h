// A socket that sends one ICMP echo request and tells what came of it.
#pragma once

#include <sys/socket.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Icmp.h"
#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// An ICMP datagram socket, which ordinary users may open where net.ipv4.ping_group_range says so,
/// otherwise a raw one, which takes privileges. Either way the error messages of routers come
/// through the error queue, in which the kernel has matched them to this socket.
///
/// Everything in it works on hostile input: any host can send any ICMP message here.
class EchoSocket {
 public:
  EchoSocket();

  /// 0, or the value of errno: EACCES or EPERM where the user may have neither socket.
  [[nodiscard]] int Open(int ttl);
  /// 0, or the value of errno. One echo for each socket.
  [[nodiscard]] int Send(std::int32_t destination, std::string_view data);
  /// False if nothing that decides the echo has come by then. Fills address and status.
  [[nodiscard]] bool WaitForReply(std::chrono::steady_clock::time_point deadline,
                                  IcmpEchoReply& reply);

 private:
  [[nodiscard]] int OpenAny();
  [[nodiscard]] bool ReadErrorQueue(IcmpEchoReply& reply);
  [[nodiscard]] bool ReadAnswer(IcmpEchoReply& reply);
  [[nodiscard]] bool IsOfThisEcho(std::string_view message, std::uint8_t type) const;

  FileDescriptor socket_;
  bool raw_ = false;
  // Random, so that nobody who does not see the echo can answer it.
  std::uint16_t identifier_;
  std::uint16_t sequence_;
};

}  // namespace tallowin::platform::linux_host
