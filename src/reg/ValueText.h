// Values of the registry as words of a command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Registry.h"

namespace tallowin::reg {

/// "REG_DWORD" for example; "type 11" for a type without a name here.
[[nodiscard]] std::string TypeName(std::uint32_t type);

/// REG_SZ and REG_EXPAND_SZ take the text as it is, REG_DWORD a number in decimal or with 0x,
/// REG_BINARY pairs of hexadecimal digits, REG_MULTI_SZ parts with \0 between them. On failure
/// nothing, and `reason` tells why.
[[nodiscard]] std::optional<platform::RegistryValue> ParseValue(std::string_view type,
                                                                std::string_view data,
                                                                std::string& reason);

/// The data in the form that ParseValue takes; hexadecimal digits for the other types. May hold
/// any bytes.
[[nodiscard]] std::string DataText(const platform::RegistryValue& value);

}  // namespace tallowin::reg
