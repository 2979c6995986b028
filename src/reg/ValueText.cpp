#include "ValueText.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tallowin::reg {
namespace {

namespace registry = platform::registry;
using platform::RegistryValue;

struct NamedType {
  std::uint32_t type;
  std::string_view name;
};

constexpr std::array<NamedType, 7> kTypes{{
    {registry::kNone, "REG_NONE"},
    {registry::kSz, "REG_SZ"},
    {registry::kExpandSz, "REG_EXPAND_SZ"},
    {registry::kBinary, "REG_BINARY"},
    {registry::kDword, "REG_DWORD"},
    {registry::kDwordBigEndian, "REG_DWORD_BIG_ENDIAN"},
    {registry::kMultiSz, "REG_MULTI_SZ"},
}};

constexpr std::string_view kPartEnd = "\\0";

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, int base) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number, base);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<RegistryValue> ParseDword(std::string_view data) {
  const bool hex = data.starts_with("0x") || data.starts_with("0X");
  const auto number = ParseNumber<std::uint32_t>(hex ? data.substr(2) : data, hex ? 16 : 10);
  if (!number) return std::nullopt;
  return RegistryValue::Dword(*number);
}

std::optional<RegistryValue> ParseBinary(std::string_view data) {
  if (data.size() % 2 != 0) return std::nullopt;
  RegistryValue value{registry::kBinary, {}};
  for (std::size_t i = 0; i < data.size(); i += 2) {
    const auto byte = ParseNumber<std::uint8_t>(data.substr(i, 2), 16);
    if (!byte) return std::nullopt;
    value.data += static_cast<char>(*byte);
  }
  return value;
}

RegistryValue ParseParts(std::string_view data) {
  RegistryValue value{registry::kMultiSz, {}};
  while (!data.empty()) {
    const auto end = std::min(data.find(kPartEnd), data.size());
    value.data.append(data.substr(0, end)) += '\0';
    data.remove_prefix(std::min(end + kPartEnd.size(), data.size()));
  }
  return value;
}

std::string PartsText(std::string_view data) {
  if (data.ends_with('\0')) data.remove_suffix(1);
  std::string text;
  for (const char c : data) {
    if (c == '\0') {
      text += kPartEnd;
    } else {
      text += c;
    }
  }
  return text;
}

std::string HexText(std::string_view data) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char c : data) {
    text += digits[static_cast<unsigned char>(c) >> 4U];
    text += digits[static_cast<unsigned char>(c) & 0xFU];
  }
  return text;
}

}  // namespace

std::string TypeName(std::uint32_t type) {
  const auto* known = std::find_if(kTypes.begin(), kTypes.end(),
                                   [type](const NamedType& each) { return each.type == type; });
  return known == kTypes.end() ? "type " + std::to_string(type) : std::string(known->name);
}

std::optional<RegistryValue> ParseValue(std::string_view type, std::string_view data,
                                        std::string& reason) {
  std::optional<RegistryValue> value;
  if (type == "REG_SZ") {
    value = RegistryValue::Text(data);
  } else if (type == "REG_EXPAND_SZ") {
    value = RegistryValue{registry::kExpandSz, std::string(data)};
  } else if (type == "REG_MULTI_SZ") {
    value = ParseParts(data);
  } else if (type == "REG_DWORD") {
    value = ParseDword(data);
    reason = "a REG_DWORD is a whole number from 0 to 4294967295, or 0x0 to 0xffffffff";
  } else if (type == "REG_BINARY") {
    value = ParseBinary(data);
    reason = "a REG_BINARY is written as pairs of hexadecimal digits, 01ff for example";
  } else {
    reason = "the type is one of REG_SZ, REG_DWORD, REG_BINARY, REG_EXPAND_SZ, REG_MULTI_SZ";
  }
  return value;
}

std::string DataText(const RegistryValue& value) {
  switch (value.type) {
    case registry::kSz:
    case registry::kExpandSz:
      return value.data;
    case registry::kMultiSz:
      return PartsText(value.data);
    case registry::kDword:
      return value.data.size() == 4 ? std::to_string(value.Number()) : HexText(value.data);
    default:
      return HexText(value.data);
  }
}

}  // namespace tallowin::reg
