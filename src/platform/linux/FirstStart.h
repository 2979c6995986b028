// What a user gets who has never started the suite.
#pragma once

#include <string>

#include "platform/linux/SqliteRegistry.h"

namespace tallowin::platform::linux_host {

/// Imports `presets`, a registry file, where the suite's own key is missing: once for each user,
/// and never over what somebody has set. All of it is stored or nothing: who is disturbed gets it
/// at the next start, and of two programs that start at the same time one does it. Gives in plain
/// words what went wrong; empty if all is well, and for a registry that cannot be read.
[[nodiscard]] std::string ImportPresetsOnce(SqliteRegistry& registry, const std::string& presets);

}  // namespace tallowin::platform::linux_host
