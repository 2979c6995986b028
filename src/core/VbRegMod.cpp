#include "core/VbRegMod.h"

#include <cmath>
#include <limits>
#include <optional>

#include "core/NumberText.h"
#include "platform/RunTimeError.h"

namespace tallowin::core {

using platform::RunTimeError;

std::string ToText(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  return {};
}

std::int16_t ToInteger(const Variant& value) {
  std::optional<double> number = 0;
  if (const auto* text = std::get_if<std::string>(&value)) number = NumberOfText(*text);
  if (const auto* stored = std::get_if<std::int32_t>(&value)) number = *stored;
  if (!number) throw RunTimeError(platform::error::kTypeMismatch, "Type mismatch");

  const double rounded = std::nearbyint(*number);
  using Limits = std::numeric_limits<std::int16_t>;
  if (rounded < Limits::min() || rounded > Limits::max()) {
    throw RunTimeError(platform::error::kOverflow, "Overflow");
  }
  return static_cast<std::int16_t>(rounded);
}

void VbRegMod::EnsureRegKey(platform::RegistryRoot rootKey, std::string_view subKey) {
  std::unique_ptr<platform::RegistryKey> key;
  (void)registry_.CreateKey(rootKey, subKey, key);
}

Variant VbRegMod::QueryRegValue(platform::RegistryRoot rootKey, std::string_view subKey,
                                std::string_view valueName) {
  std::unique_ptr<platform::RegistryKey> key;
  if (registry_.OpenKey(rootKey, subKey, key) != platform::registry::kSuccess) {
    return "Error: Opening Registry Key!";
  }
  platform::RegistryValue value;
  if (key->QueryValue(valueName, value) != platform::registry::kSuccess) {
    return "Error: Querying Value!";
  }
  if (value.type == platform::registry::kSz) {
    std::erase(value.data, '\0');
    return std::move(value.data);
  }
  if (value.type == platform::registry::kDword && value.data.size() == sizeof(std::int32_t)) {
    return static_cast<std::int32_t>(value.Number());
  }
  return {};
}

void VbRegMod::SetRegValue(platform::RegistryRoot rootKey, std::string_view subKey,
                           std::string_view valueName, const platform::RegistryValue& value) {
  if (value.type != platform::registry::kSz && value.type != platform::registry::kDword) return;
  std::unique_ptr<platform::RegistryKey> key;
  if (registry_.OpenKey(rootKey, subKey, key) != platform::registry::kSuccess) return;
  (void)key->SetValue(valueName, value);
}

}  // namespace tallowin::core
