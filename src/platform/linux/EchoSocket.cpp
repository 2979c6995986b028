#include "platform/linux/EchoSocket.h"

#include <ifaddrs.h>
#include <linux/errqueue.h>
#include <linux/icmp.h>
#include <netinet/in.h>
#include <netinet/ip.h>
#include <poll.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

#include "platform/linux/IcmpStatuses.h"

namespace tallowin::platform::linux_host {
namespace {

// No more is looked at than the headers in front of the payload.
constexpr std::size_t kReadBytes = 256;

sockaddr_in Place(std::int32_t address, std::uint16_t number) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = number;
  place.sin_addr.s_addr = static_cast<in_addr_t>(address);
  return place;
}

bool IsOwnAddress(std::int32_t address) {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return false;
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
  for (const auto* one = list; one != nullptr; one = one->ifa_next) {
    if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET) continue;
    const auto* place = reinterpret_cast<const sockaddr_in*>(one->ifa_addr);
    if (static_cast<std::int32_t>(place->sin_addr.s_addr) == address) return true;
  }
  return false;
}

/// From the kernel: the library's generator asks the processor, which takes many times as long
/// where that is a virtual one.
std::uint16_t Random() {
  std::uint16_t number = 0;
  // So few bytes are always had at once.
  (void)!getrandom(&number, sizeof number, 0);
  return number;
}

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
    empty_ = size < 0 && errno == EAGAIN;
    if (size < 0) return;
    arrived_ = true;
    size_ = static_cast<std::size_t>(size);
    ReadControl(message);
  }

  [[nodiscard]] bool Arrived() const { return arrived_; }
  /// Not so where the socket had an error to tell instead.
  [[nodiscard]] bool QueueIsEmpty() const { return empty_; }
  [[nodiscard]] std::string_view Bytes() const { return {bytes_.data(), size_}; }
  [[nodiscard]] const sock_extended_err& Error() const { return error_; }
  /// Who sent it; in the error queue, to whom the echo went.
  [[nodiscard]] std::int32_t From() const { return Packed(from_); }
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
  bool empty_ = false;
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

int EchoSocket::OpenAny() {
  raw_ = false;
  socket_ = FileDescriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP));
  if (socket_) {
    // The kernel counts its identifiers up from one socket to the next. Where this one is taken,
    // one of those has to do.
    const sockaddr_in own = Place(0, Random());
    (void)bind(socket_.Get(), reinterpret_cast<const sockaddr*>(&own), sizeof own);
    return 0;
  }
  // Only a system that does not allow this kind of socket to this user is asked for the other.
  if (errno != EACCES && errno != EPERM && errno != EPROTONOSUPPORT && errno != EAFNOSUPPORT) {
    return errno;
  }
  raw_ = true;
  return OpenRaw();
}

int EchoSocket::OpenRaw() {
  socket_ = FileDescriptor(socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP));
  if (!socket_ && helper_ != nullptr && (errno == EPERM || errno == EACCES)) {
    const int error = errno;
    socket_ = helper_->OpenRawIcmp().socket;
    errno = error;
  }
  if (!socket_) return errno;
  // The error queue is not subject to this filter.
  const icmp_filter onlyAnswers{.data = ~(1U << ICMP_ECHOREPLY)};
  return setsockopt(socket_.Get(), SOL_RAW, ICMP_FILTER, &onlyAnswers, sizeof onlyAnswers) < 0
             ? errno
             : 0;
}

int EchoSocket::Open() {
  if (socket_) return 0;
  int error = OpenAny();
  const int on = 1;
  if (error == 0 && setsockopt(socket_.Get(), IPPROTO_IP, IP_RECVERR, &on, sizeof on) < 0) {
    error = errno;
  }
  if (error != 0) socket_ = FileDescriptor();
  ttl_ = 0;
  return error;
}

int EchoSocket::SetTtl(int ttl) {
  if (ttl == ttl_) return 0;
  if (setsockopt(socket_.Get(), IPPROTO_IP, IP_TTL, &ttl, sizeof ttl) < 0) return errno;
  ttl_ = ttl;
  return 0;
}

int EchoSocket::Send(std::int32_t destination, std::string_view data, int ttl) {
  if (const int error = SetTtl(ttl)) return error;
  destination_ = destination;
  identifier_ = Random();
  sequence_ = Random();
  icmphdr header{};
  header.type = ICMP_ECHO;
  header.un.echo.id = identifier_;
  header.un.echo.sequence = sequence_;
  std::string message(reinterpret_cast<const char*>(&header), sizeof header);
  message += data;
  header.checksum = Checksum(message);
  std::memcpy(message.data(), &header, sizeof header);
  DropWhatCameMeanwhile();
  return SendMessage(message);
}

/// Late answers, and for a raw socket those to everybody else on this machine: they must not take
/// the room of the answer that is waited for.
void EchoSocket::DropWhatCameMeanwhile() {
  constexpr int kMost = 1000;  // more than its buffer holds; so a flood cannot hold this up
  for (const int queue : {static_cast<int>(MSG_ERRQUEUE), 0}) {
    int count = 0;
    while (count < kMost && !Received(socket_.Get(), queue).QueueIsEmpty()) ++count;
  }
}

int EchoSocket::SendMessage(std::string_view message) {
  const sockaddr_in to = Place(destination_, 0);
  int error = 0;
  // A raw socket is told of what befell the messages of others, and the first call behind that
  // fails with it. What is wrong with this echo fails again.
  constexpr int kTries = 3;
  for (int i = 0; i < kTries; ++i) {
    if (sendto(socket_.Get(), message.data(), message.size(), MSG_DONTWAIT,
               reinterpret_cast<const sockaddr*>(&to), sizeof to) >= 0) {
      return 0;
    }
    error = errno;
  }
  return error;
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
  if (!received.Arrived() || received.From() != destination_ ||
      !IsOfThisEcho(received.Bytes(), ICMP_ECHO)) {
    return false;
  }
  const auto& error = received.Error();
  if (error.ee_origin == SO_EE_ORIGIN_LOCAL) {
    reply.address = 0;
    reply.status = StatusOfSendError(static_cast<int>(error.ee_errno));
    return true;
  }
  const auto status = StatusOfMessage(error.ee_type, error.ee_code);
  if (error.ee_origin != SO_EE_ORIGIN_ICMP || !status) return false;
  // This machine itself says so of a neighbour that does not exist, and is no hop on the way.
  reply.address = IsOwnAddress(received.Offender()) ? 0 : received.Offender();
  reply.status = *status;
  return true;
}

bool EchoSocket::ReadAnswer(IcmpEchoReply& reply) {
  const Received received(socket_.Get(), 0);
  if (!received.Arrived() || received.From() != destination_) return false;
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
  // A datagram socket has an identifier of its own, which the kernel puts in and compares.
  return header.type == type && header.un.echo.sequence == sequence_ &&
         (!raw_ || header.un.echo.id == identifier_);
}

}  // namespace tallowin::platform::linux_host
