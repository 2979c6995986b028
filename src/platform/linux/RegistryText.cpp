#include "platform/linux/RegistryText.h"

#include <cstdint>

namespace tallowin::platform::linux_host {
namespace {

constexpr char32_t kEscapedByte = 0xDC00;

unsigned char ByteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

/// How many bytes the sequence has that this byte begins; 0 if none can begin with it.
std::size_t SequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  if (first >= 0xF0 && first <= 0xF4) return 4;
  return 0;
}

/// The character at the start of `text`, or nothing if there is no valid one.
std::optional<char32_t> DecodeOne(std::string_view text, std::size_t length) {
  if (length == 0 || length > text.size()) return std::nullopt;
  const unsigned char first = ByteAt(text, 0);
  if (length == 1) return first;
  char32_t character = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = ByteAt(text, i);
    if ((next & 0xC0U) != 0x80) return std::nullopt;
    character = (character << 6U) | (next & 0x3FU);
  }
  const bool tooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (tooLong || surrogate || character > 0x10FFFF) return std::nullopt;
  return character;
}

void AppendUnit(std::string& utf16, char32_t unit) {
  utf16 += static_cast<char>(unit & 0xFFU);
  utf16 += static_cast<char>((unit >> 8U) & 0xFFU);
}

void AppendUtf8(std::string& utf8, char32_t c) {
  const auto tail = [&](unsigned shift) {
    utf8 += static_cast<char>(0x80U | ((c >> shift) & 0x3FU));
  };
  if (c < 0x80) {
    utf8 += static_cast<char>(c);
  } else if (c < 0x800) {
    utf8 += static_cast<char>(0xC0U | (c >> 6U));
    tail(0);
  } else if (c < 0x10000) {
    utf8 += static_cast<char>(0xE0U | (c >> 12U));
    tail(6);
    tail(0);
  } else {
    utf8 += static_cast<char>(0xF0U | (c >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

char32_t UnitAt(std::string_view utf16, std::size_t at) {
  return ByteAt(utf16, at) | (static_cast<char32_t>(ByteAt(utf16, at + 1)) << 8U);
}

}  // namespace

std::string ToUtf16(std::string_view utf8) {
  std::string utf16;
  utf16.reserve(utf8.size() * 2);
  while (!utf8.empty()) {
    const std::size_t length = SequenceLength(ByteAt(utf8, 0));
    const auto character = DecodeOne(utf8, length);
    if (!character) {
      AppendUnit(utf16, kEscapedByte + ByteAt(utf8, 0));
    } else if (*character < 0x10000) {
      AppendUnit(utf16, *character);
    } else {
      AppendUnit(utf16, 0xD800 + ((*character - 0x10000) >> 10U));
      AppendUnit(utf16, 0xDC00 + ((*character - 0x10000) & 0x3FFU));
    }
    utf8.remove_prefix(character ? length : 1);
  }
  return utf16;
}

std::optional<std::string> FromUtf16(std::string_view utf16) {
  if (utf16.size() % 2 != 0) return std::nullopt;
  std::string utf8;
  utf8.reserve(utf16.size());
  for (std::size_t at = 0; at < utf16.size(); at += 2) {
    const char32_t unit = UnitAt(utf16, at);
    const char32_t next = at + 2 < utf16.size() ? UnitAt(utf16, at + 2) : 0;
    if (unit < 0xD800 || unit > 0xDFFF) {
      AppendUtf8(utf8, unit);
    } else if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
      AppendUtf8(utf8, 0x10000 + ((unit - 0xD800) << 10U) + (next - 0xDC00));
      at += 2;
    } else if (unit >= kEscapedByte + 0x80 && unit <= kEscapedByte + 0xFF) {
      utf8 += static_cast<char>(unit - kEscapedByte);
    } else {
      return std::nullopt;
    }
  }
  return utf8;
}

}  // namespace tallowin::platform::linux_host
