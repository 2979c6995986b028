#include "helper/Deeds.h"

#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/icmp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <limits>

#include "helper/Privileges.h"

namespace tallowin::helper {

namespace {

constexpr std::uint32_t kLastPrivilegedPort = 1023;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

/// The socket with the error that spoilt it, if one did.
Outcome Checked(int socket, bool good) {
  if (good) return {0, socket};
  const int error = errno;
  if (socket >= 0) close(socket);
  return {error, -1};
}

Outcome BindTcp(std::uint32_t port) {
  const int opened = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (opened < 0) return Checked(opened, false);
  const int on = 1;
  setsockopt(opened, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  return Checked(opened,
                 bind(opened, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
}

Outcome RawIcmp() {
  const int opened = socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP);
  if (opened < 0) return Checked(opened, false);
  // The type stands first behind the header of IP. Whoever gets the socket cannot change this.
  std::array<sock_filter, 5> onlyAnswers{{
      BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),
      BPF_STMT(BPF_LD | BPF_B | BPF_IND, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, ICMP_ECHOREPLY, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, std::numeric_limits<std::uint32_t>::max()),
      BPF_STMT(BPF_RET | BPF_K, 0),
  }};
  const sock_fprog filter{.len = onlyAnswers.size(), .filter = onlyAnswers.data()};
  const int on = 1;
  return Checked(opened,
                 setsockopt(opened, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter) == 0 &&
                     setsockopt(opened, SOL_SOCKET, SO_LOCK_FILTER, &on, sizeof on) == 0);
}

Outcome SetClock(std::int64_t seconds, std::int64_t nanoseconds) {
  const timespec time{.tv_sec = seconds, .tv_nsec = nanoseconds};
  return Checked(-1, clock_settime(CLOCK_REALTIME, &time) == 0);
}

}  // namespace

Outcome Answer(const Request& request) {
  const Outcome refused{EINVAL, -1};
  const Outcome stuck{EPERM, -1};
  switch (request.kind) {
    case Kind::BindTcp:
      if (request.port == 0 || request.port > kLastPrivilegedPort) return refused;
      return KeepOnly(CAP_NET_BIND_SERVICE) ? BindTcp(request.port) : stuck;
    case Kind::RawIcmp:
      return KeepOnly(CAP_NET_RAW) ? RawIcmp() : stuck;
    case Kind::SetClock:
      if (request.seconds < 0 || request.nanoseconds < 0 ||
          request.nanoseconds >= kNanosecondsPerSecond) {
        return refused;
      }
      return KeepOnly(CAP_SYS_TIME) ? SetClock(request.seconds, request.nanoseconds) : stuck;
  }
  return refused;
}

}  // namespace tallowin::helper
