// The readers of the kernel's tables of its IP stack, given any text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/linux/IpStatisticsFiles.h"

namespace linux_host = tallowin::platform::linux_host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<tallowin::platform::TcpRow> tcp;
  std::vector<tallowin::platform::UdpRow> udp;
  const std::unordered_set<std::uint32_t> except = {1055};
  if (linux_host::ReadTcpRows(text, except, tcp) != linux_host::ReadUdpRows(text, except, udp)) {
    std::abort();
  }
  // The header is no row.
  if (tcp.size() != udp.size() || tcp.size() > linux_host::CountRows(text, 1)) std::abort();
  for (const auto& row : tcp) {
    if (row.state > tallowin::platform::tcp_state::kDeleteTcb) std::abort();
  }
  if (const auto group = linux_host::CounterGroup::Find(text, "Tcp")) {
    (void)(*group)["MaxConn"];
    (void)(*group)["ActiveOpens"];
  }
  return 0;
}
