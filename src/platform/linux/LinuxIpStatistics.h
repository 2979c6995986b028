// The IP stack as /proc/net shows it.
#pragma once

#include <string>

#include "platform/IpStatistics.h"

namespace tallowin::platform::linux_host {

/// The kernel does not count what routing discards.
class LinuxIpStatistics : public IpStatistics {
 public:
  /// Another folder than /proc/net is for tests.
  explicit LinuxIpStatistics(std::string folder = "/proc/net") : folder_(std::move(folder)) {}

  std::uint32_t GetIpStatistics(IpCounters& counters) override;
  std::uint32_t GetTcpStatistics(TcpCounters& counters) override;
  std::uint32_t GetUdpStatistics(UdpCounters& counters) override;
  std::uint32_t GetIcmpStatistics(IcmpStatistics& counters) override;

  /// Sockets of IPv6 are among them where both ends are IPv4 addresses.
  std::uint32_t GetTcpTable(std::vector<TcpRow>& table, bool sorted) override;
  std::uint32_t GetUdpTable(std::vector<UdpRow>& table, bool sorted) override;

 private:
  std::string folder_;
};

}  // namespace tallowin::platform::linux_host
