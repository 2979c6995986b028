// A socket that sends ICMP echo requests and tells what came of each.
#pragma once

#include <sys/socket.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Icmp.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/PrivilegedHelper.h"

namespace tallowin::platform::linux_host {

/// An ICMP datagram socket, which ordinary users may open where net.ipv4.ping_group_range says so,
/// otherwise a raw one, which takes privileges. Either way the error messages of routers come
/// through the error queue. The kernel keeps those of others out of a datagram socket's queue, but
/// not out of a raw one's.
///
/// Everything in it works on hostile input: any host can send any ICMP message here, at any time.
class EchoSocket {
 public:
  /// `helper` opens the raw socket where this user may not; null for none. It must outlive this.
  explicit EchoSocket(const PrivilegedHelper* helper = nullptr) : helper_(helper) {}

  /// 0, or the value of errno: EACCES or EPERM where the user may have neither socket. Once open it
  /// stays so, and another call costs nothing.
  [[nodiscard]] int Open();
  /// 0, or the value of errno. Each echo has a sequence number of its own, so that no answer to an
  /// earlier one can be taken for its own.
  [[nodiscard]] int Send(std::int32_t destination, std::string_view data, int ttl);
  /// False if nothing that decides the newest echo has come by then. Fills address and status.
  [[nodiscard]] bool WaitForReply(std::chrono::steady_clock::time_point deadline,
                                  IcmpEchoReply& reply);

 private:
  [[nodiscard]] int OpenAny();
  [[nodiscard]] int OpenRaw();
  [[nodiscard]] int SetTtl(int ttl);
  void DropWhatCameMeanwhile();
  [[nodiscard]] int SendMessage(std::string_view message);
  [[nodiscard]] bool ReadErrorQueue(IcmpEchoReply& reply);
  [[nodiscard]] bool ReadAnswer(IcmpEchoReply& reply);
  [[nodiscard]] bool IsOfThisEcho(std::string_view message, std::uint8_t type) const;

  const PrivilegedHelper* helper_;
  FileDescriptor socket_;
  bool raw_ = false;
  int ttl_ = 0;
  std::int32_t destination_ = 0;
  // Random, so that whoever does not see the echo has to guess its answer. A datagram socket sends
  // the kernel's own identifier instead.
  std::uint16_t identifier_ = 0;
  std::uint16_t sequence_ = 0;
};

}  // namespace tallowin::platform::linux_host
