// Names of roots, keys and values: their written forms and how they compare.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"

namespace tallowin::platform::linux_host {

struct RegistryLocation {
  RegistryRoot root = RegistryRoot::None;
  std::string path;
};

/// "HKEY_CURRENT_USER" for example.
[[nodiscard]] std::string_view RootName(RegistryRoot root);

/// Reads a key as people write it, "HKEY_CURRENT_USER\Software" or "HKCU\Software". Nothing if it
/// begins with no known root.
[[nodiscard]] std::optional<RegistryLocation> ParseRegistryLocation(std::string_view text);

/// The written form with the root's full name.
[[nodiscard]] std::string WriteRegistryLocation(const RegistryLocation& location);

/// The names along a path, the root's first; empty ones are passed over. A path below
/// HKEY_USERS\.DEFAULT gives the names below HKEY_CURRENT_USER. Nothing for RegistryRoot::None.
[[nodiscard]] std::vector<std::string_view> NamesAlongPath(RegistryRoot root,
                                                           std::string_view path);

}  // namespace tallowin::platform::linux_host
