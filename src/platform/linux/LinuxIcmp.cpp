#include "platform/linux/LinuxIcmp.h"

#include "platform/linux/IcmpStatuses.h"

namespace tallowin::platform::linux_host {
namespace {

using Clock = std::chrono::steady_clock;

// Of the Windows call, which lays the payload behind its record and keeps room for an ICMP error.
constexpr std::size_t kReplyRecord = 28;
constexpr std::size_t kErrorMessage = 8;

std::uint32_t Refuse(IcmpEchoReply& reply, std::uint32_t status) {
  reply = {.address = 0, .status = status, .roundTripTime = 0};
  return 1;
}

}  // namespace

std::uint32_t LinuxIcmp::IcmpSendEcho(Handle, std::int32_t destination, std::string_view data,
                                      int ttl, IcmpEchoReply& reply, std::size_t replySize,
                                      std::chrono::milliseconds timeout) {
  if (replySize < kReplyRecord + data.size() + kErrorMessage) {
    return Refuse(reply, icmp::kBufferTooSmall);
  }
  // The system takes "no address" for this machine itself.
  if (destination == 0) return Refuse(reply, icmp::kBadDestination);
  if (const int error = socket_.Open()) return Refuse(reply, StatusOfOpenError(error));
  const auto sent = Clock::now();
  if (const int error = socket_.Send(destination, data, ttl)) {
    return Refuse(reply, StatusOfSendError(error));
  }
  if (!socket_.WaitForReply(sent + timeout, reply)) return 0;
  const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - sent);
  reply.roundTripTime = static_cast<std::uint32_t>(passed.count());
  return 1;
}

}  // namespace tallowin::platform::linux_host
