#include "console/Escapes.h"

#include <algorithm>
#include <charconv>

#include "forms/PlainText.h"

namespace tallowin::console {

namespace {

struct ShortEscape {
  char byte;
  char letter;
};
constexpr ShortEscape kShortEscapes[] = {{'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}, {'\\', '\\'}};

bool IsInner(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80; }

/// Takes the two digits behind "\x" off the front of `text`.
std::optional<char> TakeHexByte(std::string_view& text) {
  if (text.size() < 2) return std::nullopt;
  unsigned char byte = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + 2, byte, 16);
  if (failure != std::errc() || end != text.data() + 2) return std::nullopt;
  text.remove_prefix(2);
  return static_cast<char>(byte);
}

/// Takes what follows a backslash off the front of `text`.
std::optional<char> TakeEscaped(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const char letter = text.front();
  text.remove_prefix(1);
  if (letter == 'x') return TakeHexByte(text);
  for (const auto& escape : kShortEscapes) {
    if (escape.letter == letter) return escape.byte;
  }
  return std::nullopt;
}

}  // namespace

std::string Escape(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto* escape =
        std::find_if(std::begin(kShortEscapes), std::end(kShortEscapes),
                     [&](const ShortEscape& candidate) { return candidate.byte == byte; });
    if (escape == std::end(kShortEscapes)) {
      text += byte;
    } else {
      text += '\\';
      text += escape->letter;
    }
  }
  return forms::PlainText(text);
}

std::optional<std::string> Unescape(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const char byte = text.front();
    text.remove_prefix(1);
    if (byte != '\\') {
      bytes += byte;
      continue;
    }
    const auto escaped = TakeEscaped(text);
    if (!escaped) return std::nullopt;
    bytes += *escaped;
  }
  return bytes;
}

std::string_view FirstCharacters(std::string_view bytes, std::size_t count) {
  // A foreign text may go on for ever with inner bytes alone; no character has more than four.
  const std::size_t limit = std::min(bytes.size(), 4 * count);
  std::size_t characters = 0;
  std::size_t length = 0;
  for (; length < limit; ++length) {
    if (!IsInner(bytes[length]) && ++characters > count) break;
  }
  return bytes.substr(0, length);
}

std::size_t CountCharacters(std::string_view bytes) {
  return static_cast<std::size_t>(
      std::count_if(bytes.begin(), bytes.end(), [](char byte) { return !IsInner(byte); }));
}

}  // namespace tallowin::console
