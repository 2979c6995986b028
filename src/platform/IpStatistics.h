// What the machine's IP stack counts, and which connections it has (IPv4).
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <vector>

namespace tallowin::platform {

/// Counters start when the machine does and wrap around. 0 stands for what the host does not count.
///
/// Forwarding (1 enabled, 2 disabled), default TTL; datagrams received, with header errors, with
/// address errors, forwarded, of unknown protocols, discarded, delivered; outgoing ones requested,
/// discarded by routing, discarded otherwise, without a route; reassembly timeouts, requests,
/// successes, failures; fragmentation successes, failures, fragments; interfaces, addresses,
/// routes.
using IpCounters = std::array<std::uint32_t, 23>;

/// Timeout algorithm, shortest and longest timeout in milliseconds, highest number of connections
/// (0xFFFFFFFF: no limit); active opens, passive opens, failed attempts, resets of established
/// connections, connections established now; segments received, sent, sent again; errors received,
/// resets sent; connections opened so far, in either way.
using TcpCounters = std::array<std::uint32_t, 15>;

/// Datagrams received, without a port, with errors; datagrams sent; rows of the UDP table.
using UdpCounters = std::array<std::uint32_t, 5>;

/// Messages, errors, destination unreachable, time exceeded, parameter problem, source quench,
/// redirection, echo request and reply, timestamp request and reply, address mask request and
/// reply.
using IcmpCounters = std::array<std::uint32_t, 13>;

struct IcmpStatistics {
  IcmpCounters in = {};
  IcmpCounters out = {};
};

/// One end of a connection, in the order of the network, which is also the order of sorting.
struct IpEndpoint {
  std::array<std::uint8_t, 4> address = {};
  std::array<std::uint8_t, 2> port = {};

  friend auto operator<=>(const IpEndpoint&, const IpEndpoint&) = default;
};

namespace tcp_state {
inline constexpr std::uint32_t kClosed = 1;
inline constexpr std::uint32_t kListen = 2;
inline constexpr std::uint32_t kSynSent = 3;
inline constexpr std::uint32_t kSynReceived = 4;
inline constexpr std::uint32_t kEstablished = 5;
inline constexpr std::uint32_t kFinWait1 = 6;
inline constexpr std::uint32_t kFinWait2 = 7;
inline constexpr std::uint32_t kCloseWait = 8;
inline constexpr std::uint32_t kClosing = 9;
inline constexpr std::uint32_t kLastAck = 10;
inline constexpr std::uint32_t kTimeWait = 11;
inline constexpr std::uint32_t kDeleteTcb = 12;
}  // namespace tcp_state

struct TcpRow {
  std::uint32_t state = 0;  ///< one of tcp_state; other numbers are states that have no name
  IpEndpoint local;
  IpEndpoint remote;
};

struct UdpRow {
  IpEndpoint local;
};

namespace ip_statistics {
inline constexpr std::uint32_t kSuccess = 0;
inline constexpr std::uint32_t kNotSupported = 50;
}  // namespace ip_statistics

/// Results are the system's error numbers. On failure the argument is left as it was. Nothing waits
/// for the network.
class IpStatistics {
 public:
  virtual ~IpStatistics() = default;

  virtual std::uint32_t GetIpStatistics(IpCounters& counters) = 0;
  virtual std::uint32_t GetTcpStatistics(TcpCounters& counters) = 0;
  virtual std::uint32_t GetUdpStatistics(UdpCounters& counters) = 0;
  virtual std::uint32_t GetIcmpStatistics(IcmpStatistics& counters) = 0;

  /// All connections and listeners with IPv4 ends, however many there are; what listens at all
  /// addresses of IPv6 stands as one at 0.0.0.0. With `sorted` they stand
  /// in the order of local address and port, then of remote address and port.
  virtual std::uint32_t GetTcpTable(std::vector<TcpRow>& table, bool sorted) = 0;
  virtual std::uint32_t GetUdpTable(std::vector<UdpRow>& table, bool sorted) = 0;
};

}  // namespace tallowin::platform
