// A stored value as the registry class shows it, and as it would lie in a buffer.
#pragma once

#include <cstddef>

#include "platform/Registry.h"
#include "trojansentry/EasyRegVariant.h"

namespace tallowin::trojansentry {

/// How many bytes the data takes in a buffer, with the NULs that close texts and lists.
[[nodiscard]] std::size_t SizeInBuffer(const platform::RegistryValue& value);

[[nodiscard]] EasyRegVariant ValueText(const platform::RegistryValue& value, bool returnBinStr);

/// The list that consists of `parts`, as it is stored.
[[nodiscard]] platform::RegistryValue ListOf(const std::vector<std::string>& parts);

}  // namespace tallowin::trojansentry
