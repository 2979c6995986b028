#include "platform/linux/Utf16.h"

#include "platform/linux/ByteSource.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHigh(char16_t unit) { return (unit & 0xFC00U) == 0xD800U; }
bool IsLow(char16_t unit) { return (unit & 0xFC00U) == 0xDC00U; }

/// Takes one or two units off the front of `units`, which is not empty.
char32_t TakeCharacter(std::u16string_view& units) {
  const char16_t first = units.front();
  units.remove_prefix(1);
  if (!IsHigh(first) && !IsLow(first)) return first;
  if (IsLow(first) || units.empty() || !IsLow(units.front())) return kReplacement;
  const char16_t second = units.front();
  units.remove_prefix(1);
  return 0x10000U + ((first & 0x3FFU) << 10U) + (second & 0x3FFU);
}

void Append(std::string& text, char32_t c) {
  const auto start = [&](unsigned mark, unsigned shift) {
    text.push_back(static_cast<char>(mark | static_cast<unsigned>(c) >> shift));
  };
  const auto continued = [&](unsigned shift) {
    text.push_back(static_cast<char>(0x80U | (static_cast<unsigned>(c) >> shift & 0x3FU)));
  };
  if (c < 0x80) {
    start(0, 0);
  } else if (c < 0x800) {
    start(0xC0, 6);
    continued(0);
  } else if (c < 0x10000) {
    start(0xE0, 12);
    continued(6);
    continued(0);
  } else {
    start(0xF0, 18);
    continued(12);
    continued(6);
    continued(0);
  }
}

}  // namespace

std::u16string Utf16Units(std::span<const std::uint8_t> bytes) {
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) units.push_back(Little16(bytes, at));
  return units;
}

std::string Utf8FromUtf16(std::u16string_view units) {
  std::string text;
  text.reserve(units.size());
  while (!units.empty()) Append(text, TakeCharacter(units));
  return text;
}

}  // namespace tallowin::platform::linux_host
