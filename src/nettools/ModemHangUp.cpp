#include "nettools/ModemHangUp.h"

#include <array>
#include <span>
#include <string_view>

#include "core/MiscRoutines.h"

namespace tallowin::nettools {

namespace {

constexpr std::size_t kMostConnections = 256;

std::string_view AnsiToText(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

}  // namespace

void ModemHangUp::HangUpConnection() {
  std::array<platform::RasConnection, kMostConnections> connections;
  std::size_t count = 0;
  lastRasResult_ = dialUp_.RasEnumConnections(connections, count);
  if (lastRasResult_ != platform::ras::kSuccess) return;
  for (const platform::RasConnection& connection : std::span(connections).first(count)) {
    if (core::Trim(AnsiToText(connection.szEntryName)) != core::Trim(ConnectionName)) continue;
    lastRasResult_ = dialUp_.RasHangUp(connection);
  }
}

}  // namespace tallowin::nettools
