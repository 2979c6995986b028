// A value of a registry key with its name.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace tallowin::platform::linux_host {

struct StoredValue {
  std::string name = {};
  RegistryValue value = {};

  friend bool operator==(const StoredValue&, const StoredValue&) = default;
};

}  // namespace tallowin::platform::linux_host
