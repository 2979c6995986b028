#include "core/VbRegMod.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "core/MiscRoutines.h"
#include "platform/RunTimeError.h"

namespace tallowin::core {

namespace {

using platform::RunTimeError;

std::optional<double> ParseHexadecimal(std::string_view digits) {
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, failure] = std::from_chars(digits.data(), end, number, 16);
  if (failure != std::errc() || stop != end) return std::nullopt;
  // Four digits are a 16-bit number with its sign.
  if (number <= 0xFFFF) return static_cast<std::int16_t>(number);
  return static_cast<std::int32_t>(number);
}

std::optional<double> ParseNumber(std::string_view text) {
  text = Trim(text);
  if (text.starts_with("&H") || text.starts_with("&h")) return ParseHexadecimal(text.substr(2));
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  if (text.empty() || text.find_first_not_of("+-.0123456789eE") != std::string_view::npos) {
    return std::nullopt;
  }
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure == std::errc::result_out_of_range) {
    const bool tooSmall =
        text.find("e-") != std::string_view::npos || text.find("E-") != std::string_view::npos;
    return tooSmall ? 0 : std::numeric_limits<double>::infinity();
  }
  if (failure != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

std::string ToText(const Variant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  return {};
}

std::int16_t ToInteger(const Variant& value) {
  std::optional<double> number = 0;
  if (const auto* text = std::get_if<std::string>(&value)) number = ParseNumber(*text);
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
