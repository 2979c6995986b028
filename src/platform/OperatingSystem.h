// Which family of operating systems this host counts as.
#pragma once

#include <cstdint>

namespace tallowin::platform {

/// As GetVersionEx tells it. Platform 1 is the family whose process snapshots carry the full path
/// of each program, platform 2 the family where it has to be asked for.
struct OsVersion {
  std::uint32_t platformId;
  std::uint32_t majorVersion;
  std::uint32_t minorVersion;
};

class OperatingSystem {
 public:
  virtual ~OperatingSystem() = default;
  [[nodiscard]] virtual OsVersion GetVersion() const = 0;
};

}  // namespace tallowin::platform
