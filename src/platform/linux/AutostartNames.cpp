#include "platform/linux/AutostartNames.h"

#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

bool IsUtf8(std::string_view text) {
  QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString decoded = decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  return !decode.hasError();
}

/// The bytes of the character at the beginning of UTF-8 text if it ends a line, turns the direction
/// of writing or is a control character beyond ASCII.
std::size_t SizeOfMisleading(std::string_view text) {
  const auto between = [&](std::string_view first, std::string_view last) {
    const std::string_view character = text.substr(0, first.size());
    return first <= character && character <= last;
  };
  if (between("\xC2\x80", "\xC2\x9F") || between("\xD8\x9C", "\xD8\x9C")) return 2;
  const bool three = between("\xE2\x80\x8E", "\xE2\x80\x8F") ||
                     between("\xE2\x80\xA8", "\xE2\x80\xAE") ||
                     between("\xE2\x81\xA6", "\xE2\x81\xA9");
  return three ? 3 : 0;
}

bool ContinuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

/// The longest beginning of at most `size` bytes that ends between two characters.
std::string_view Beginning(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && ContinuesCharacter(text[size])) --size;
  return text.substr(0, size);
}

std::string_view Ending(std::string_view text, std::size_t size) {
  std::size_t begin = text.size() - std::min(size, text.size());
  while (begin < text.size() && ContinuesCharacter(text[begin])) ++begin;
  return text.substr(begin);
}

/// FNV-1a, to tell names apart; nothing rests on its being hard to forge.
std::string Checksum(std::string_view text) {
  std::uint64_t sum = 0xCBF29CE484222325;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  std::array<char, 17> digits = {};
  (void)std::snprintf(digits.data(), digits.size(), "%016llx",
                      static_cast<unsigned long long>(sum));
  return digits.data();
}

std::string Shortened(std::string_view name, const std::string& addition) {
  if (name.size() + addition.size() <= kEnumerableBytes) return std::string(name) + addition;
  constexpr std::size_t kBeginning = 60;
  const std::string end = " (" + Checksum(name) + ")" + addition;
  const std::string beginning = std::string(Beginning(name, kBeginning)) + "...";
  const std::size_t left = kEnumerableBytes - beginning.size() - end.size();
  return beginning + std::string(Ending(name, left)) + end;
}

}  // namespace

std::string Printable(std::string_view text) {
  const bool utf8 = IsUtf8(text);
  std::string printable;
  std::size_t misleading = 0;  // bytes left of such a character
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const auto byte = static_cast<unsigned char>(c);
    if (utf8 && misleading == 0) misleading = SizeOfMisleading(text.substr(i));
    if (byte < 0x20 || byte == 0x7F || misleading > 0 || (byte >= 0x80 && !utf8)) {
      if (misleading > 0) --misleading;
      constexpr std::string_view kDigits = "0123456789ABCDEF";
      printable += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    } else {
      printable += c;
    }
  }
  return printable;
}

std::string ShortenedText(std::string_view text) {
  if (text.size() <= kEnumerableBytes) return std::string(text);
  return std::string(Beginning(text, kEnumerableBytes - 3)) + "...";
}

void UniqueNames::Take(std::string_view name) { taken_.insert(CaseFolded(name)); }

std::string UniqueNames::Make(const std::string& name) {
  std::string unique = Shortened(name, {});
  int& next = next_.try_emplace(CaseFolded(unique), 2).first->second;
  while (!taken_.insert(CaseFolded(unique)).second) {
    unique = Shortened(name, " (" + std::to_string(next++) + ")");
  }
  return unique;
}

}  // namespace tallowin::platform::linux_host
