#include "analysis/Netstat.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/NetstatItems.h"

namespace tallowin::analysis {
namespace {

using platform::ip_statistics::kSuccess;

constexpr std::size_t kRowsOfTable = 101;

void AppendCounters(std::string& text, std::string_view protocol,
                    std::span<const char* const> items, std::span<const std::uint32_t> counters,
                    std::string_view direction) {
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::string_view item = items[i];
    text.append(protocol).append("\t").append(item).append("\t");
    text += std::to_string(static_cast<std::int32_t>(counters[i]));
    // The one row that ends behind its counter.
    if (item != kOutgoingResets) text.append("\t").append(direction);
    text += "\r\n";
  }
}

std::string AddressText(const std::array<std::uint8_t, 4>& address) {
  std::string text;
  for (const std::uint8_t part : address) {
    if (!text.empty()) text += '.';
    text += std::to_string(part);
  }
  return text;
}

/// In signed 16-bit arithmetic, whose overflow counts as 0.
std::string PortText(const std::array<std::uint8_t, 2>& port) {
  constexpr int kFirstOverflow = 0x8000;
  const int number = port[0] * 256 + port[1];
  return std::to_string(number < kFirstOverflow ? number : 0);
}

std::string EndpointText(const platform::IpEndpoint& end) {
  return AddressText(end.address) + ":" + PortText(end.port);
}

std::string StateName(std::uint32_t state) {
  constexpr std::array<const char*, 12> kNames = {
      "CLOSED",    "LISTEN",     "SYN_SENT", "SYN_RCVD", "ESTAB",     "FIN_WAIT1",
      "FIN_WAIT2", "CLOSE_WAIT", "CLOSING",  "LAST_ACK", "TIME_WAIT", "DELETE_TCB"};
  return state >= 1 && state <= kNames.size() ? kNames[state - 1] : "UNDEFINED";
}

std::string RowText(const platform::TcpRow& row) {
  const bool listens = row.state == platform::tcp_state::kListen;
  return "TCP\t" + EndpointText(row.local) + "\t" +
         (listens ? AddressText(row.remote.address) + ":" : EndpointText(row.remote)) + "\t" +
         StateName(row.state) + "\r\n";
}

std::string RowText(const platform::UdpRow& row) {
  return "UDP\t" + EndpointText(row.local) + "\r\n";
}

template <typename Row>
void AppendRows(std::string& text, const std::vector<Row>& table, const char* missing) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (i == kRowsOfTable) {
      throw TableOverflow(missing);
    }
    text += RowText(table[i]);
  }
}

}  // namespace

std::string Netstat::GetStatsText() {
  constexpr std::string_view kNoDirection = "N/A";
  platform::IpCounters ip = {};
  platform::TcpCounters tcp = {};
  platform::UdpCounters udp = {};
  platform::IcmpStatistics icmp = {};
  std::string text;
  const auto succeeded = [&](std::uint32_t result, const char* group) {
    if (result != kSuccess) text.append("Unable to retrieve ").append(group).append(" Statistics");
    return result == kSuccess;
  };
  if (succeeded(statistics_.GetIpStatistics(ip), "IP")) {
    AppendCounters(text, "All", kIpItems, ip, kNoDirection);
  }
  if (succeeded(statistics_.GetTcpStatistics(tcp), "TCP")) {
    AppendCounters(text, "TCP", kTcpItems, tcp, kNoDirection);
  }
  if (succeeded(statistics_.GetUdpStatistics(udp), "UDP")) {
    AppendCounters(text, "UDP", kUdpItems, udp, kNoDirection);
  }
  if (succeeded(statistics_.GetIcmpStatistics(icmp), "ICMP")) {
    AppendCounters(text, "ICMP", kIcmpItems, icmp.in, "In");
    AppendCounters(text, "ICMP", kIcmpItems, icmp.out, "Out");
  }
  return text;
}

void Netstat::GetConnectionsText(std::string& text) {
  text.clear();
  std::vector<platform::TcpRow> tcp;
  if (statistics_.GetTcpTable(tcp, true) == kSuccess) {
    AppendRows(text, tcp, "further TCP connections, and all UDP listeners,");
  }
  std::vector<platform::UdpRow> udp;
  if (statistics_.GetUdpTable(udp, true) == kSuccess) {
    AppendRows(text, udp, "further UDP listeners");
  }
}

std::string Netstat::GetConnectionsText() {
  std::string text;
  GetConnectionsText(text);
  return text;
}

}  // namespace tallowin::analysis
