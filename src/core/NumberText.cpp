#include "core/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace tallowin::core {

namespace {

constexpr std::string_view kDigits = "0123456789";

std::string_view TrimWhiteSpace(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
  const auto first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

/// True if the text began with one of `characters`, which is then gone with the space behind it.
bool TakeFirst(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text = TrimWhiteSpace(text.substr(1));
  return true;
}

bool TakeLast(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.back()) == std::string_view::npos) return false;
  text = TrimWhiteSpace(text.substr(0, text.size() - 1));
  return true;
}

/// What stands around the digits, each at most once; false if it is at odds with itself.
bool TakeSigns(std::string_view& text, bool& negative) {
  const bool bracket = TakeFirst(text, "(");
  if (bracket != TakeLast(text, ")")) return false;
  const bool currency = TakeFirst(text, "$");
  const bool minus = text.starts_with('-') || text.ends_with('-');
  const bool leading = TakeFirst(text, "+-");
  const bool trailing = !leading && TakeLast(text, "+-");
  if (!currency) (void)TakeFirst(text, "$");
  negative = bracket || minus;
  return !(leading || trailing) || !bracket;
}

std::size_t TakeAll(std::string_view& text, std::string_view characters, std::string& taken) {
  const auto end = std::min(text.find_first_not_of(characters), text.size());
  for (const char c : text.substr(0, end)) {
    if (c != ',') taken += c;
  }
  text.remove_prefix(end);
  return end;
}

/// Without its signs, as the language's library reads it; nothing where it is no number.
std::optional<std::string> Canonical(std::string_view text) {
  std::string number;
  if (text.starts_with(',')) return std::nullopt;
  std::size_t digits = TakeAll(text, "0123456789,", number);
  if (text.starts_with('.')) {
    number += '.';
    text.remove_prefix(1);
    digits += TakeAll(text, kDigits, number);
  }
  if (digits == 0) return std::nullopt;
  if (text.empty()) return number;
  if (std::string_view("eEdD").find(text.front()) == std::string_view::npos) return std::nullopt;
  text.remove_prefix(1);
  number += 'e';
  if (text.starts_with('-') || text.starts_with('+')) {
    number += text.front();
    text.remove_prefix(1);
  }
  if (TakeAll(text, kDigits, number) == 0 || !text.empty()) return std::nullopt;
  return number;
}

std::optional<double> Decimal(std::string_view text) {
  bool negative = false;
  if (!TakeSigns(text, negative)) return std::nullopt;
  const auto canonical = Canonical(text);
  if (!canonical) return std::nullopt;
  double number = 0;
  const auto [stop, failure] =
      std::from_chars(canonical->data(), canonical->data() + canonical->size(), number);
  if (failure == std::errc::result_out_of_range) {
    const bool tooSmall = canonical->find("e-") != std::string::npos;
    number = tooSmall ? 0 : std::numeric_limits<double>::infinity();
  }
  return negative ? -number : number;
}

std::optional<double> Whole(std::string_view digits, int base) {
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, failure] = std::from_chars(digits.data(), end, number, base);
  if (failure != std::errc() || stop != end) return std::nullopt;
  if (number <= 0xFFFF) return static_cast<std::int16_t>(number);
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::optional<double> NumberOfText(std::string_view text) {
  constexpr int kOctal = 8;
  constexpr int kHexadecimal = 16;
  text = TrimWhiteSpace(text);
  if (!text.starts_with('&')) return Decimal(text);
  text.remove_prefix(1);
  if (text.starts_with('H') || text.starts_with('h')) return Whole(text.substr(1), kHexadecimal);
  if (text.starts_with('O') || text.starts_with('o')) text.remove_prefix(1);
  return Whole(text, kOctal);
}

bool IsNumeric(std::string_view text) {
  const auto number = NumberOfText(text);
  return number && std::isfinite(*number);
}

}  // namespace tallowin::core
