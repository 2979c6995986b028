#include "trojansentry/RegistryValueText.h"

#include <array>

namespace tallowin::trojansentry {

namespace {

using platform::RegistryValue;
namespace registry = platform::registry;

constexpr std::array<const char*, 11> kNamesOfTypes = {
    "REG_NONE",
    "REG_SZ",
    "REG_EXPAND_SZ",
    "REG_BINARY",
    "REG_DWORD",
    "REG_DWORD_BIG_ENDIAN",
    "REG_LINK",
    "REG_MULTI_SZ",
    "REG_RESOURCE_LIST",
    "REG_FULL_RESOURCE_DESCRIPTOR",
    "REG_RESOURCE_REQUIREMENTS_LIST",
};

std::string Hexadecimal(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 3);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += {kDigits[byte >> 4U], kDigits[byte & 0xFU], ' '};
  }
  return text;
}

/// The store leaves out the NUL behind the last part's own; a buffer has it.
std::string WithListEnd(std::string_view data) {
  std::string list(data);
  if (list.empty() || list.back() == '\0') list += '\0';
  return list;
}

VariantArray Parts(std::string_view list) {
  VariantArray parts;
  while (!list.empty()) {
    if (!parts) parts.emplace();
    const std::size_t end = list.find('\0');
    parts->emplace_back(std::string(list.substr(0, end)));
    list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
  }
  return parts;
}

std::string Undefined(std::uint32_t type) {
  if (type < kNamesOfTypes.size()) {
    return std::string("Not defined value_type=") + kNamesOfTypes[type];
  }
  return "value_type=" + std::to_string(type);
}

}  // namespace

std::size_t SizeInBuffer(const RegistryValue& value) {
  if (value.type == registry::kSz || value.type == registry::kExpandSz) {
    return value.data.size() + 1;
  }
  return value.type == registry::kMultiSz ? WithListEnd(value.data).size() : value.data.size();
}

EasyRegVariant ValueText(const RegistryValue& value, bool returnBinStr) {
  switch (value.type) {
    case registry::kSz:
    case registry::kExpandSz:
    case registry::kDwordBigEndian:
      return value.data;
    case registry::kBinary:
    case registry::kDword:
      return returnBinStr ? value.data : Hexadecimal(value.data);
    case registry::kMultiSz:
      return Parts(WithListEnd(value.data));
    default:
      return Undefined(value.type);
  }
}

RegistryValue ListOf(const std::vector<std::string>& parts) {
  RegistryValue list{registry::kMultiSz, {}};
  for (const std::string& part : parts) (list.data += part) += '\0';
  return list;
}

}  // namespace tallowin::trojansentry
