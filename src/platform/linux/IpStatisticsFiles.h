// The files in which the kernel shows its IP stack, read from their text. Any bytes may come: what
// is no such text gives nothing, a line that is none is left out.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/IpStatistics.h"

namespace tallowin::platform::linux_host {

/// The counters of one protocol of /proc/net/snmp, "Ip" for example, under their names.
class CounterGroup {
 public:
  /// Nothing if there is no such protocol in `text`, into which the result points.
  [[nodiscard]] static std::optional<CounterGroup> Find(std::string_view text,
                                                        std::string_view protocol);

  /// The lower 32 bits; 0 for a name that is not among them.
  [[nodiscard]] std::uint32_t operator[](std::string_view name) const;

  /// The named counters in the order of the names, an empty name standing for 0.
  void Take(std::span<const char* const> names, std::span<std::uint32_t> counters) const;

 private:
  struct Counter {
    std::string_view name;
    std::string_view number;
  };
  std::vector<Counter> counters_;
};

/// Lines behind the first `headerLines`; an unfinished last line does not count.
[[nodiscard]] std::uint32_t CountRows(std::string_view text, std::uint32_t headerLines);

/// Of /proc/net/tcp and /proc/net/tcp6, added to `rows`. Of the latter those between IPv4 ends
/// alone, which the kernel writes as mapped addresses, and what waits at all addresses, which it
/// does at those of IPv4 too unless it asked for IPv6 alone: the kernel does not show that there,
/// and who knows it hands the inodes of such sockets in as `except`. False for what is no such
/// file.
bool ReadTcpRows(std::string_view text, const std::unordered_set<std::uint32_t>& except,
                 std::vector<TcpRow>& rows);
/// Of /proc/net/udp and /proc/net/udp6; the same holds.
bool ReadUdpRows(std::string_view text, const std::unordered_set<std::uint32_t>& except,
                 std::vector<UdpRow>& rows);

}  // namespace tallowin::platform::linux_host
