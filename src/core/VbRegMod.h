// Flat registry routines: each opens and closes a key within one call.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "platform/Registry.h"

namespace tallowin::core {

/// Nothing, a text or a number.
using Variant = std::variant<std::monostate, std::string, std::int32_t>;

/// Nothing is the empty text, a number its decimal form.
[[nodiscard]] std::string ToText(const Variant& value);

/// Nothing is 0. A text must be a number (NumberText.h); halves are rounded to the even neighbour.
/// Throws RunTimeError 13 "Type mismatch" for any other text and 6 "Overflow" for a number that 16
/// bits with sign cannot hold.
[[nodiscard]] std::int16_t ToInteger(const Variant& value);

class VbRegMod {
 public:
  explicit VbRegMod(platform::Registry& registry) : registry_(registry) {}

  /// Makes the key if it is missing. The outcome is not reported.
  void EnsureRegKey(platform::RegistryRoot rootKey, std::string_view subKey);

  /// The value of a kSz (NULs removed) or kDword; nothing for any other type. Failures come as
  /// ordinary texts, "Error: Opening Registry Key!" and "Error: Querying Value!".
  [[nodiscard]] Variant QueryRegValue(platform::RegistryRoot rootKey, std::string_view subKey,
                                      std::string_view valueName);

  /// Writes a kSz or kDword; other types are ignored. Never makes a key, and says nothing when
  /// there is none.
  void SetRegValue(platform::RegistryRoot rootKey, std::string_view subKey,
                   std::string_view valueName, const platform::RegistryValue& value);

 private:
  platform::Registry& registry_;
};

}  // namespace tallowin::core
