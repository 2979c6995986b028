#include "platform/linux/LinuxIpStatistics.h"

#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/linux/ForeignFiles.h"
#include "platform/linux/IpStatisticsFiles.h"
#include "platform/linux/Ipv6OnlySockets.h"

namespace tallowin::platform::linux_host {
namespace {

// The tables have 150 bytes for a connection: this is more than the ports of some addresses.
constexpr std::size_t kLongestTable = std::size_t{64} << 20U;

std::string ReadTable(const std::string& name) {
  BoundedText table;
  return ReadBounded("/proc/net/" + name, kLongestTable, table) == Reading::Done
             ? std::move(table.text)
             : std::string();
}

/// Counters of one protocol, by the kernel's names for them.
class Snmp {
 public:
  explicit Snmp(std::string_view protocol)
      : text_(ReadTable("snmp")), group_(CounterGroup::Find(text_, protocol)) {}
  Snmp(const Snmp&) = delete;
  Snmp& operator=(const Snmp&) = delete;

  explicit operator bool() const { return group_.has_value(); }
  const CounterGroup& operator*() const { return *group_; }

 private:
  std::string text_;  ///< into which the group points
  std::optional<CounterGroup> group_;
};

std::uint32_t CountAddresses() {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return 0;
  std::uint32_t count = 0;
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET) ++count;
  }
  freeifaddrs(list);
  return count;
}

/// The empty name is what routing discards, which the kernel does not count.
constexpr std::array<const char*, 20> kIp = {"Forwarding",
                                             "DefaultTTL",
                                             "InReceives",
                                             "InHdrErrors",
                                             "InAddrErrors",
                                             "ForwDatagrams",
                                             "InUnknownProtos",
                                             "InDiscards",
                                             "InDelivers",
                                             "OutRequests",
                                             "",
                                             "OutDiscards",
                                             "OutNoRoutes",
                                             "ReasmTimeout",
                                             "ReasmReqds",
                                             "ReasmOKs",
                                             "ReasmFails",
                                             "FragOKs",
                                             "FragFails",
                                             "FragCreates"};

constexpr std::array<const char*, 14> kTcp = {
    "RtoAlgorithm", "RtoMin",    "RtoMax", "MaxConn", "ActiveOpens", "PassiveOpens", "AttemptFails",
    "EstabResets",  "CurrEstab", "InSegs", "OutSegs", "RetransSegs", "InErrs",       "OutRsts"};

constexpr std::array<const char*, 4> kUdp = {"InDatagrams", "NoPorts", "InErrors", "OutDatagrams"};

constexpr std::array<const char*, 13> kIcmpIn = {
    "InMsgs",          "InErrors",    "InDestUnreachs", "InTimeExcds", "InParmProbs",
    "InSrcQuenchs",    "InRedirects", "InEchos",        "InEchoReps",  "InTimestamps",
    "InTimestampReps", "InAddrMasks", "InAddrMaskReps"};

constexpr std::array<const char*, 13> kIcmpOut = {
    "OutMsgs",          "OutErrors",    "OutDestUnreachs", "OutTimeExcds", "OutParmProbs",
    "OutSrcQuenchs",    "OutRedirects", "OutEchos",        "OutEchoReps",  "OutTimestamps",
    "OutTimestampReps", "OutAddrMasks", "OutAddrMaskReps"};

}  // namespace

std::uint32_t LinuxIpStatistics::GetIpStatistics(IpCounters& counters) {
  constexpr std::uint32_t kHeaderOfInterfaces = 2;
  constexpr std::uint32_t kHeaderOfRoutes = 1;
  const Snmp ip("Ip");
  if (!ip) return ip_statistics::kNotSupported;
  (*ip).Take(kIp, counters);
  counters[kIp.size()] = CountRows(ReadTable("dev"), kHeaderOfInterfaces);
  counters[kIp.size() + 1] = CountAddresses();
  counters[kIp.size() + 2] = CountRows(ReadTable("route"), kHeaderOfRoutes);
  return ip_statistics::kSuccess;
}

std::uint32_t LinuxIpStatistics::GetTcpStatistics(TcpCounters& counters) {
  const Snmp tcp("Tcp");
  if (!tcp) return ip_statistics::kNotSupported;
  (*tcp).Take(kTcp, counters);
  counters.back() = (*tcp)["ActiveOpens"] + (*tcp)["PassiveOpens"];
  return ip_statistics::kSuccess;
}

std::uint32_t LinuxIpStatistics::GetUdpStatistics(UdpCounters& counters) {
  const Snmp udp("Udp");
  if (!udp) return ip_statistics::kNotSupported;
  (*udp).Take(kUdp, counters);
  std::vector<UdpRow> table;
  (void)GetUdpTable(table, false);
  counters.back() = static_cast<std::uint32_t>(table.size());
  return ip_statistics::kSuccess;
}

std::uint32_t LinuxIpStatistics::GetIcmpStatistics(IcmpStatistics& counters) {
  const Snmp icmp("Icmp");
  if (!icmp) return ip_statistics::kNotSupported;
  (*icmp).Take(kIcmpIn, counters.in);
  (*icmp).Take(kIcmpOut, counters.out);
  return ip_statistics::kSuccess;
}

std::uint32_t LinuxIpStatistics::GetTcpTable(std::vector<TcpRow>& table, bool sorted) {
  std::vector<TcpRow> rows;
  if (!ReadTcpRows(ReadTable("tcp"), {}, rows)) return ip_statistics::kNotSupported;
  // A machine may be without IPv6.
  (void)ReadTcpRows(ReadTable("tcp6"), Ipv6OnlySockets(IPPROTO_TCP), rows);
  if (sorted) {
    std::sort(rows.begin(), rows.end(), [](const TcpRow& a, const TcpRow& b) {
      return std::tie(a.local, a.remote) < std::tie(b.local, b.remote);
    });
  }
  table = std::move(rows);
  return ip_statistics::kSuccess;
}

std::uint32_t LinuxIpStatistics::GetUdpTable(std::vector<UdpRow>& table, bool sorted) {
  std::vector<UdpRow> rows;
  if (!ReadUdpRows(ReadTable("udp"), {}, rows)) return ip_statistics::kNotSupported;
  (void)ReadUdpRows(ReadTable("udp6"), Ipv6OnlySockets(IPPROTO_UDP), rows);
  if (sorted) {
    std::sort(rows.begin(), rows.end(),
              [](const UdpRow& a, const UdpRow& b) { return a.local < b.local; });
  }
  table = std::move(rows);
  return ip_statistics::kSuccess;
}

}  // namespace tallowin::platform::linux_host
