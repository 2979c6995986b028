// Keys of the registry as statements of a registry file.
#pragma once

#include <string>

#include "platform/Registry.h"
#include "platform/linux/RegistryNames.h"

namespace tallowin::platform::linux_host {

/// Collects the statements as UTF-8 with CR LF.
class RegistryFileWriter {
 public:
  explicit RegistryFileWriter(Registry& registry);

  /// The key with everything below it, each key before the ones below it and all in the order in
  /// which they are enumerated: read again, they are written in that order.
  [[nodiscard]] RegistryResult Add(const RegistryLocation& key);
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  [[nodiscard]] RegistryResult AddValues(RegistryKey& key);

  Registry& registry_;
  std::string text_;
};

}  // namespace tallowin::platform::linux_host
