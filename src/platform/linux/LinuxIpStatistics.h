// The IP stack as /proc/net shows it.
#pragma once

#include "platform/IpStatistics.h"

namespace tallowin::platform::linux_host {

/// The kernel does not count what routing discards.
class LinuxIpStatistics : public IpStatistics {
 public:
  std::uint32_t GetIpStatistics(IpCounters& counters) override;
  std::uint32_t GetTcpStatistics(TcpCounters& counters) override;
  std::uint32_t GetUdpStatistics(UdpCounters& counters) override;
  std::uint32_t GetIcmpStatistics(IcmpStatistics& counters) override;

  /// Sockets of IPv6 are among them where IPv4 reaches them.
  std::uint32_t GetTcpTable(std::vector<TcpRow>& table, bool sorted) override;
  std::uint32_t GetUdpTable(std::vector<UdpRow>& table, bool sorted) override;
};

}  // namespace tallowin::platform::linux_host
