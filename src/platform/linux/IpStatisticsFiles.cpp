#include "platform/linux/IpStatisticsFiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kHexOfIpv4 = 8;
constexpr std::size_t kHexOfIpv6 = 32;
constexpr std::string_view kAnyIpv6 = "00000000000000000000000000000000:";
constexpr std::string_view kNobody = "00000000000000000000000000000000:0000";

/// Calls `treat` with each whole line.
template <typename Treat>
void ForEachLine(std::string_view text, Treat treat) {
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    treat(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
}

std::optional<std::uint32_t> FromHex(std::string_view text) {
  std::uint32_t number = 0;
  return ReadNumber(text, number, 16) ? std::optional(number) : std::nullopt;
}

/// A word of four bytes, as which an address stands in memory and is printed as one number.
std::optional<std::array<std::uint8_t, 4>> AddressFromHex(std::string_view text) {
  const auto number = FromHex(text);
  if (!number) return {};
  std::array<std::uint8_t, 4> address;
  std::memcpy(address.data(), &*number, address.size());
  return address;
}

/// The IPv4 part of an address of either length. Nothing for a true IPv6 address.
std::optional<std::array<std::uint8_t, 4>> Ipv4FromHex(std::string_view text) {
  if (text.size() == kHexOfIpv6) {
    constexpr std::array<std::uint8_t, 4> kMapped = {0, 0, 0xFF, 0xFF};
    if (!text.starts_with("0000000000000000")) return {};
    if (AddressFromHex(text.substr(16, kHexOfIpv4)) != kMapped) return {};
    text.remove_prefix(kHexOfIpv6 - kHexOfIpv4);
  }
  return text.size() == kHexOfIpv4 ? AddressFromHex(text) : std::nullopt;
}

/// "0100007F:1F90".
std::optional<IpEndpoint> EndpointFromHex(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return {};
  const auto address = Ipv4FromHex(text.substr(0, colon));
  const auto port = FromHex(text.substr(colon + 1));
  if (!address || !port || *port > 0xFFFF) return {};
  return IpEndpoint{
      .address = *address,
      .port = {static_cast<std::uint8_t>(*port >> 8U), static_cast<std::uint8_t>(*port & 0xFFU)}};
}

/// The unspecified address of IPv6 as that of IPv4.
std::string_view WithoutAnyIpv6(std::string_view end) {
  if (end.starts_with(kAnyIpv6)) end.remove_prefix(kHexOfIpv6 - kHexOfIpv4);
  return end;
}

/// The kernel numbers its states otherwise.
std::uint32_t StateFromKernel(std::uint32_t state) {
  constexpr std::array<std::uint32_t, 13> kStates = {0,
                                                     tcp_state::kEstablished,
                                                     tcp_state::kSynSent,
                                                     tcp_state::kSynReceived,
                                                     tcp_state::kFinWait1,
                                                     tcp_state::kFinWait2,
                                                     tcp_state::kTimeWait,
                                                     tcp_state::kClosed,
                                                     tcp_state::kCloseWait,
                                                     tcp_state::kLastAck,
                                                     tcp_state::kListen,
                                                     tcp_state::kClosing,
                                                     tcp_state::kSynReceived};
  return state < kStates.size() ? kStates[state] : 0;
}

/// Of a socket that stands in the tables of both protocols.
struct SocketRow {
  IpEndpoint local;
  IpEndpoint remote;
  std::uint32_t state = 0;  ///< as the kernel numbers it
  std::uint32_t inode = 0;
};

///   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000 0 0 1055 ...
std::optional<SocketRow> ReadSocketRow(std::string_view line) {
  std::array<std::string_view, 10> fields;
  for (std::string_view& field : fields) {
    SkipBlanks(line);
    field = line.substr(0, line.find(' '));
    line.remove_prefix(field.size());
  }
  // Who waits for anybody at all addresses is met at those of IPv4 too. One that waits at a mapped
  // address has nobody at its other end as well, written in full length.
  const bool waits = fields[2] == kNobody;
  const auto local = EndpointFromHex(waits ? WithoutAnyIpv6(fields[1]) : fields[1]);
  const auto remote = EndpointFromHex(waits ? WithoutAnyIpv6(fields[2]) : fields[2]);
  const auto state = FromHex(fields[3]);
  std::uint32_t inode = 0;
  if (!fields[0].ends_with(':') || !local || !remote || !state || !ReadNumber(fields[9], inode)) {
    return {};
  }
  return SocketRow{.local = *local, .remote = *remote, .state = *state, .inode = inode};
}

template <typename Treat>
bool ForEachSocket(std::string_view text, const std::unordered_set<std::uint32_t>& except,
                   Treat treat) {
  const std::string_view header = text.substr(0, text.find('\n'));
  if (header.find("local_address") == std::string_view::npos) return false;
  text.remove_prefix(std::min(header.size() + 1, text.size()));
  ForEachLine(text, [&](std::string_view line) {
    const auto row = ReadSocketRow(line);
    if (row && !except.contains(row->inode)) treat(*row);
  });
  return true;
}

}  // namespace

std::optional<CounterGroup> CounterGroup::Find(std::string_view text, std::string_view protocol) {
  // Two lines for each protocol: names, then numbers.
  std::vector<std::vector<std::string_view>> lines;
  ForEachLine(text, [&](std::string_view line) {
    if (lines.size() < 2 && line.starts_with(protocol) &&
        line.substr(protocol.size()).starts_with(": ")) {
      lines.push_back(Parts(line.substr(protocol.size() + 1), ' '));
    }
  });
  if (lines.size() < 2 || lines[0].size() != lines[1].size()) return {};
  CounterGroup group;
  for (std::size_t i = 0; i < lines[0].size(); ++i) {
    group.counters_.push_back({lines[0][i], lines[1][i]});
  }
  return group;
}

std::uint32_t CounterGroup::operator[](std::string_view name) const {
  const auto found = std::find_if(counters_.begin(), counters_.end(),
                                  [&](const Counter& counter) { return counter.name == name; });
  if (found == counters_.end()) return 0;
  const std::string_view text = found->number;
  const char* end = text.data() + text.size();
  // The one number that may be negative is a limit which there is not.
  std::int64_t negative = 0;
  if (text.starts_with('-') && std::from_chars(text.data(), end, negative).ptr == end) {
    return static_cast<std::uint32_t>(negative);
  }
  std::uint64_t number = 0;
  std::from_chars(text.data(), end, number);
  return static_cast<std::uint32_t>(number);
}

void CounterGroup::Take(std::span<const char* const> names,
                        std::span<std::uint32_t> counters) const {
  std::transform(names.begin(), names.end(), counters.begin(),
                 [&](std::string_view name) { return name.empty() ? 0 : (*this)[name]; });
}

std::uint32_t CountRows(std::string_view text, std::uint32_t headerLines) {
  const auto lines = static_cast<std::uint32_t>(std::count(text.begin(), text.end(), '\n'));
  return lines - std::min(lines, headerLines);
}

bool ReadTcpRows(std::string_view text, const std::unordered_set<std::uint32_t>& except,
                 std::vector<TcpRow>& rows) {
  return ForEachSocket(text, except, [&](const SocketRow& row) {
    rows.push_back({.state = StateFromKernel(row.state), .local = row.local, .remote = row.remote});
  });
}

bool ReadUdpRows(std::string_view text, const std::unordered_set<std::uint32_t>& except,
                 std::vector<UdpRow>& rows) {
  return ForEachSocket(text, except,
                       [&](const SocketRow& row) { rows.push_back({.local = row.local}); });
}

}  // namespace tallowin::platform::linux_host
