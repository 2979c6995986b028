// How the data of a value is written behind its name in a registry file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Registry.h"

namespace tallowin::platform::linux_host {

/// Texts in hexadecimal data are 8-bit in version four and UTF-16LE in version five.
enum class RegistryFileVersion { Four, Five };

/// Text data is stored in UTF-8 without the closing NUL that a file has; a list keeps the NUL
/// behind each part and loses the one that ends the list. Nothing if the bytes of a text are no
/// UTF-16.
[[nodiscard]] std::optional<RegistryValue> ValueFromFileBytes(std::uint32_t type, std::string bytes,
                                                              RegistryFileVersion version);

/// What stands behind the equals sign in a file of version 5.00. `column` is where it begins; lines
/// are wrapped before column 80.
[[nodiscard]] std::string WriteValueData(const RegistryValue& value, std::size_t column);

/// A text in quotes, with backslashes before quotes and backslashes.
[[nodiscard]] std::string Quote(std::string_view text);

}  // namespace tallowin::platform::linux_host
