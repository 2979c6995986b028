// The commands of tallowin-reg.
#pragma once

#include <string>
#include <vector>

#include "platform/Registry.h"

namespace tallowin::reg {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

[[nodiscard]] const char* HelpText();

/// Runs one command, its name first, and gives the exit status. What was asked for goes to standard
/// output, messages to standard error; neither ever gets a control character of a stored text.
[[nodiscard]] int RunCommand(const std::vector<std::string>& words, platform::Registry& registry);

}  // namespace tallowin::reg
