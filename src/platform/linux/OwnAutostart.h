// The suite's own ways to be started with the session.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/AutostartSource.h"

namespace tallowin::platform::linux_host {

/// What the package brings along, and a user may switch on: no finding of the watch. Everything
/// about such an entry has to be as the package made it, so that nobody hides behind it.
struct OwnAutostart {
  std::vector<std::string> commands = {};  ///< whole, as the desktop entry and the unit have them
  std::string unit = {};                   ///< the file of the package; empty for none

  /// For a program in `executables`, the folder of an installed suite.
  [[nodiscard]] static OwnAutostart Of(const std::string& executables);

  [[nodiscard]] bool Covers(const AutostartEntry& entry) const;
};

}  // namespace tallowin::platform::linux_host
