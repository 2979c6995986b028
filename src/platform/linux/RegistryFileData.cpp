#include "platform/linux/RegistryFileData.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "platform/linux/RegistryText.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kColumns = 80;
constexpr std::string_view kListEnd("\0\0", 2);
constexpr std::string_view kNul("\0", 1);

bool IsText(std::uint32_t type) {
  return type == registry::kSz || type == registry::kExpandSz || type == registry::kMultiSz;
}

/// Whether the text can stand in quotes: a line end in it would end the statement.
bool FitsInQuotes(std::string_view text) {
  const auto control = [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\t'; };
  return std::none_of(text.begin(), text.end(), control);
}

std::string BytesInFile(const RegistryValue& value) {
  if (!IsText(value.type)) return value.data;
  // A list that lacks the NUL behind its last part is left alone, so that it comes back so.
  const bool openList =
      value.type == registry::kMultiSz && !value.data.empty() && !value.data.ends_with('\0');
  return ToUtf16(openList ? value.data : value.data + '\0');
}

std::string HexName(std::uint32_t type) {
  if (type == registry::kBinary) return "hex:";
  std::array<char, 24> text{};
  (void)std::snprintf(text.data(), text.size(), "hex(%x):", type);
  return text.data();
}

std::string WriteHex(std::string text, const std::string& bytes, std::size_t column) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::size_t kPair = 3;  // two digits and a comma
  column += text.size();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (column + kPair + 1 > kColumns) {
      text += "\\\r\n  ";
      column = 2;
    }
    const auto byte = static_cast<unsigned char>(bytes[i]);
    text += digits[byte >> 4U];
    text += digits[byte & 0xFU];
    if (i + 1 < bytes.size()) text += ',';
    column += kPair;
  }
  return text;
}

}  // namespace

std::optional<RegistryValue> ValueFromFileBytes(std::uint32_t type, std::string bytes,
                                                RegistryFileVersion version) {
  if (!IsText(type)) return RegistryValue{type, std::move(bytes)};
  if (version == RegistryFileVersion::Five) {
    auto text = FromUtf16(bytes);
    if (!text) return std::nullopt;
    bytes = std::move(*text);
  }
  const bool closed = type == registry::kMultiSz ? bytes.ends_with(kListEnd) || bytes == kNul
                                                 : bytes.ends_with(kNul);
  if (closed) bytes.pop_back();
  return RegistryValue{type, std::move(bytes)};
}

std::string WriteValueData(const RegistryValue& value, std::size_t column) {
  if (value.type == registry::kSz && FitsInQuotes(value.data)) return Quote(value.data);
  if (value.type == registry::kDword && value.data.size() == 4) {
    std::array<char, 24> text{};
    (void)std::snprintf(text.data(), text.size(), "dword:%08x", value.Number());
    return text.data();
  }
  return WriteHex(HexName(value.type), BytesInFile(value), column);
}

std::string Quote(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace tallowin::platform::linux_host
