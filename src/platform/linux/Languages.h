// Language numbers of Windows: what they are called, and the user's own.
#pragma once

#include <cstdint>
#include <string>

namespace tallowin::platform::linux_host {

/// In the user's language; "Language Neutral" for a number that is no language.
[[nodiscard]] std::string LanguageName(std::uint16_t language);

/// American English where the user's locale names no language.
[[nodiscard]] std::uint16_t UserLanguage();

}  // namespace tallowin::platform::linux_host
