// What the programs of the suite and their one privileged helper say to each other.
#pragma once

#include <cstdint>

namespace tallowin::helper {

/// The helper's end of a socket pair (AF_UNIX, SOCK_SEQPACKET) is its standard input. One Request
/// in one message, one Reply in one message, and the helper has gone. Both are of one machine, so
/// numbers stand in its own byte order.
enum class Kind : std::uint32_t {
  /// A TCP socket bound to `port` on all IPv4 addresses, not listening yet.
  BindTcp = 1,
  /// A raw socket for ICMP that hears echo replies and nothing else, for good.
  RawIcmp = 2,
  /// The clock is set to `seconds` and `nanoseconds` since 1970, UTC.
  SetClock = 3,
};

struct Request {
  Kind kind = {};
  std::uint32_t port = 0;  ///< 1 to 1023: others need no privilege
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;
};

/// The socket travels with it, as one descriptor in an SCM_RIGHTS message.
struct Reply {
  std::int32_t error;  ///< 0, or a value of errno
};

}  // namespace tallowin::helper
