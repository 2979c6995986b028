// One ICMP echo, with a hop limit of one's own.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tallowin::platform {

/// What came back. `status` is in the numbering of the Windows calls: 0 for an answer of the target
/// itself, 11002 destination network not reachable, 11013 time to live expired in transit ...
struct IcmpEchoReply {
  /// Packed, in network byte order: who replied, be it a router on the way. 0 where the status is
  /// this machine's own and nobody replied, be it because a neighbour does not exist.
  std::int32_t address = 0;
  std::uint32_t status = 0;
  std::uint32_t roundTripTime = 0;  ///< whole milliseconds
};

namespace icmp {
inline constexpr std::uint32_t kSuccess = 0;
inline constexpr std::uint32_t kBufferTooSmall = 11001;
inline constexpr std::uint32_t kNetworkNotReachable = 11002;
inline constexpr std::uint32_t kHostNotReachable = 11003;
inline constexpr std::uint32_t kProtocolNotReachable = 11004;
inline constexpr std::uint32_t kPortNotReachable = 11005;
inline constexpr std::uint32_t kNoResources = 11006;
inline constexpr std::uint32_t kPacketTooBig = 11009;
inline constexpr std::uint32_t kBadRoute = 11012;
inline constexpr std::uint32_t kTtlExpiredInTransit = 11013;
inline constexpr std::uint32_t kTtlExpiredReassembly = 11014;
inline constexpr std::uint32_t kParameterProblem = 11015;
inline constexpr std::uint32_t kSourceQuench = 11016;
inline constexpr std::uint32_t kBadDestination = 11018;
inline constexpr std::uint32_t kGeneralFailure = 11050;
}  // namespace icmp

class Icmp {
 public:
  using Handle = std::int32_t;
  static constexpr Handle kNoHandle = -1;

  virtual ~Icmp() = default;

  /// Gives `kNoHandle` if the host has no ICMP at all. A handle that is never closed must cost no
  /// more than memory: callers do leave them open.
  virtual Handle IcmpCreateFile() = 0;

  /// Sends one echo request with `data` as its payload and waits for what comes of it, at most
  /// `timeout`; no event is delivered meanwhile. `destination` is packed, in network byte order;
  /// `ttl` is 1 to 255. `replySize` is the size of the reply buffer: 28 bytes for the record, then
  /// the payload, then 8 bytes for an error message; with less the status is 11001.
  ///
  /// Gives the number of replies: 0 if the time ran out, else 1, with `reply` filled. What this
  /// machine itself refuses is a reply too, at once, without an address: 11018 for a destination
  /// that takes no echo (0.0.0.0, or a broadcast), 11050 where the user may not send echoes.
  virtual std::uint32_t IcmpSendEcho(Handle handle, std::int32_t destination, std::string_view data,
                                     int ttl, IcmpEchoReply& reply, std::size_t replySize,
                                     std::chrono::milliseconds timeout) = 0;

  virtual bool IcmpCloseHandle(Handle handle) = 0;
};

}  // namespace tallowin::platform
