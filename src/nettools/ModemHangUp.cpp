#include "nettools/ModemHangUp.h"

#include <array>
#include <span>
#include <string_view>

namespace tallowin::nettools {

namespace {

constexpr std::size_t kMostConnections = 256;

std::string_view AnsiToText(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void ModemHangUp::HangUpConnection() {
  std::array<platform::RasConnection, kMostConnections> connections;
  std::size_t count = 0;
  lastRasResult_ = dialUp_.RasEnumConnections(connections, count);
  if (lastRasResult_ != platform::ras::kSuccess) return;
  for (const platform::RasConnection& connection : std::span(connections).first(count)) {
    if (Trimmed(AnsiToText(connection.szEntryName)) != Trimmed(ConnectionName)) continue;
    lastRasResult_ = dialUp_.RasHangUp(connection);
  }
}

}  // namespace tallowin::nettools
