#include "analysis/HexText.h"

#include <string_view>

namespace tallowin::analysis {

std::string HexText(std::uint32_t number, std::size_t digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (; number != 0 || text.size() < digits; number >>= 4U) {
    text.insert(text.begin(), kDigits[number & 0xFU]);
  }
  return text;
}

}  // namespace tallowin::analysis
