#include "forms/PlainText.h"

#include <algorithm>
#include <cstddef>

namespace tallowin::forms {

namespace {

struct Character {
  char32_t code;
  std::size_t length;  // in bytes; 0 where the bytes are no character
};

/// The character at the start of `bytes`: the shortest form only, no surrogates, as the Unicode
/// Standard's table 3-7 (well-formed UTF-8 byte sequences) has it.
Character Decode(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {0, 0};
  char32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if ((byte & 0xC0U) != 0x80) return {0, 0};
    code = (code << 6U) | (byte & 0x3FU);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kSmallest[length] || code > 0x10FFFF || surrogate) return {0, 0};
  return {code, length};
}

bool SteersDisplay(char32_t code) {
  struct Range {
    char32_t first, last;
  };
  // Controls, line separators, and the property Default_Ignorable_Code_Point of the Unicode
  // Character Database, DerivedCoreProperties.txt, which takes in all that sets a direction.
  constexpr Range kRanges[] = {
      {0x00, 0x1F},     {0x7F, 0x9F},       {0xAD, 0xAD},       {0x34F, 0x34F},    {0x61C, 0x61C},
      {0x115F, 0x1160}, {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},  {0x2028, 0x202E},
      {0x2060, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0},
      {0xFFF0, 0xFFFB}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};
  for (const auto& range : kRanges) {
    if (code >= range.first && code <= range.last) return code != '\n' && code != '\t';
  }
  return false;
}

/// The length of what needs no second look, which is nearly all of a log.
std::size_t PlainLength(std::string_view bytes) {
  const auto end = std::find_if(bytes.begin(), bytes.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 || byte >= 0x7F) && c != '\n' && c != '\t';
  });
  return static_cast<std::size_t>(end - bytes.begin());
}

void AppendEscaped(std::string& text, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += "\\x";
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
}

}  // namespace

std::string PlainText(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t plain = PlainLength(bytes);
    text += bytes.substr(0, plain);
    bytes.remove_prefix(plain);
    if (bytes.empty()) break;
    if (bytes[0] == '\r') {
      bytes.remove_prefix(bytes.starts_with("\r\n") ? 2 : 1);
      text += '\n';
      continue;
    }
    const Character character = Decode(bytes);
    const std::size_t length = character.length == 0 ? 1 : character.length;
    if (character.length == 0 || SteersDisplay(character.code)) {
      AppendEscaped(text, bytes.substr(0, length));
    } else {
      text += bytes.substr(0, length);
    }
    bytes.remove_prefix(length);
  }
  return text;
}

}  // namespace tallowin::forms
