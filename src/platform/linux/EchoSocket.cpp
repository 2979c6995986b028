#include "platform/linux/EchoSocket.h"

#include <linux/errqueue.h>
#include <linux/icmp.h>
#include <netinet/in.h>
#include <netinet/ip.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <random>
#include <string>

#include "platform/linux/IcmpStatuses.h"

namespace tallowin::platform::linux_host {
namespace {

// No more is looked at than the headers in front of the payload.
constexpr std::size_t kReadBytes = 256;

std::uint16_t Random() { return static_cast<std::uint16_t>(std::random_device()()); }

/// RFC 1071. The kernel does this only for datagram sockets.
std::uint16_t Checksum(std::string_view message) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < message.size(); i += 2) {
    std::uint16_t word = 0;
    std::memcpy(&word, message.data() + i, std::min<std::size_t>(2, message.size() - i));
    sum += word;
  }
  while (sum >> 16) sum = (sum & 0xFFFF) + (sum >> 16);
  return static_cast<std::uint16_t>(~sum);
}

/// One message of a socket: its bytes, who sent it or, in the error queue, what befell it.
class Received {
 public:
  Received(int socket, int flags) {
    iovec part{.iov_base = bytes_.data(), .iov_len = bytes_.size()};
    msghdr message{};
    message.msg_name = &from_;
    message.msg_namelen = sizeof from_;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control_.data();
    message.msg_controllen = control_.size();
    const auto size = recvmsg(socket, &message, flags | MSG_DONTWAIT);
    if (size < 0) return;
    arrived_ = true;
    size_ = static_cast<std::size_t>(size);
    ReadControl(message);
  }

  [[nodiscard]] bool Arrived() const { return arrived_; }
  [[nodiscard]] std::string_view Bytes() const { return {bytes_.data(), size_}; }
  [[nodiscard]] std::int32_t From() const { return Packed(from_); }
  [[nodiscard]] const sock_extended_err& Error() const { return error_; }
  /// The router or host that reported the error.
  [[nodiscard]] std::int32_t Offender() const { return Packed(offender_); }

 private:
  static std::int32_t Packed(const sockaddr_in& address) {
    return static_cast<std::int32_t>(address.sin_addr.s_addr);
  }

  void ReadControl(msghdr& message) {
    for (auto* part = CMSG_FIRSTHDR(&message); part != nullptr;
         part = CMSG_NXTHDR(&message, part)) {
      if (part->cmsg_level != IPPROTO_IP || part->cmsg_type != IP_RECVERR) continue;
      if (part->cmsg_len < CMSG_LEN(sizeof error_ + sizeof offender_)) continue;
      std::memcpy(&error_, CMSG_DATA(part), sizeof error_);
      std::memcpy(&offender_, CMSG_DATA(part) + sizeof error_, sizeof offender_);
    }
  }

  std::array<char, kReadBytes> bytes_{};
  alignas(cmsghdr) std::array<char, 256> control_{};
  std::size_t size_ = 0;
  bool arrived_ = false;
  sockaddr_in from_{};
  sockaddr_in offender_{};
  sock_extended_err error_{};
};

std::string_view WithoutIpHeader(std::string_view packet) {
  if (packet.empty()) return {};
  const std::size_t header = std::size_t{4} * (static_cast<unsigned char>(packet[0]) & 0x0FU);
  return header < packet.size() ? packet.substr(header) : std::string_view();
}

}  // namespace

EchoSocket::EchoSocket() : identifier_(Random()), sequence_(Random()) {}

int EchoSocket::OpenAny() {
  socket_ = FileDescriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP));
  if (socket_) return 0;
  // Only a system that does not allow this kind of socket to this user is asked for the other.
  if (errno != EACCES && errno != EPERM && errno != EPROTONOSUPPORT && errno != EAFNOSUPPORT) {
    return errno;
  }
  socket_ = FileDescriptor(socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP));
  if (!socket_) return errno;
  raw_ = true;
  // The error queue is not subject to this filter.
  const icmp_filter onlyAnswers{.data = ~(1U << ICMP_ECHOREPLY)};
  return setsockopt(socket_.Get(), SOL_RAW, ICMP_FILTER, &onlyAnswers, sizeof onlyAnswers) < 0
             ? errno
             : 0;
}

int EchoSocket::Open(int ttl) {
  if (const int error = OpenAny()) return error;
  const int on = 1;
  if (setsockopt(socket_.Get(), IPPROTO_IP, IP_RECVERR, &on, sizeof on) < 0) return errno;
  if (setsockopt(socket_.Get(), IPPROTO_IP, IP_TTL, &ttl, sizeof ttl) < 0) return errno;
  return 0;
}

int EchoSocket::Send(std::int32_t destination, std::string_view data) {
  icmphdr header{};
  header.type = ICMP_ECHO;
  header.un.echo.id = identifier_;
  header.un.echo.sequence = sequence_;
  std::string message(reinterpret_cast<const char*>(&header), sizeof header);
  message += data;
  header.checksum = Checksum(message);
  std::memcpy(message.data(), &header, sizeof header);

  sockaddr_in to{};
  to.sin_family = AF_INET;
  to.sin_addr.s_addr = static_cast<in_addr_t>(destination);
  const auto sent = sendto(socket_.Get(), message.data(), message.size(), MSG_DONTWAIT,
                           reinterpret_cast<const sockaddr*>(&to), sizeof to);
  return sent < 0 ? errno : 0;
}

bool EchoSocket::WaitForReply(std::chrono::steady_clock::time_point deadline,
                              IcmpEchoReply& reply) {
  using std::chrono::steady_clock;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd waiting{.fd = socket_.Get(), .events = POLLIN, .revents = 0};
    if (poll(&waiting, 1, static_cast<int>(left.count())) <= 0) continue;
    // The error queue first: a pending error makes the other reading fail, which also clears it.
    if (ReadErrorQueue(reply) || ReadAnswer(reply)) return true;
  }
}

bool EchoSocket::ReadErrorQueue(IcmpEchoReply& reply) {
  const Received received(socket_.Get(), MSG_ERRQUEUE);
  if (!received.Arrived() || !IsOfThisEcho(received.Bytes(), ICMP_ECHO)) return false;
  const auto& error = received.Error();
  if (error.ee_origin == SO_EE_ORIGIN_LOCAL) {
    reply.address = 0;
    reply.status = StatusOfSendError(static_cast<int>(error.ee_errno));
    return true;
  }
  const auto status = StatusOfMessage(error.ee_type, error.ee_code);
  if (error.ee_origin != SO_EE_ORIGIN_ICMP || !status) return false;
  reply.address = received.Offender();
  reply.status = *status;
  return true;
}

bool EchoSocket::ReadAnswer(IcmpEchoReply& reply) {
  const Received received(socket_.Get(), 0);
  if (!received.Arrived()) return false;
  const auto message = raw_ ? WithoutIpHeader(received.Bytes()) : received.Bytes();
  if (!IsOfThisEcho(message, ICMP_ECHOREPLY)) return false;
  reply.address = received.From();
  reply.status = icmp::kSuccess;
  return true;
}

bool EchoSocket::IsOfThisEcho(std::string_view message, std::uint8_t type) const {
  icmphdr header{};
  if (message.size() < sizeof header) return false;
  std::memcpy(&header, message.data(), sizeof header);
  // A datagram socket has an identifier of the kernel's, which also has compared it.
  return header.type == type && header.un.echo.sequence == sequence_ &&
         (!raw_ || header.un.echo.id == identifier_);
}

}  // namespace tallowin::platform::linux_host
