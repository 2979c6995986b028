// Names and paths as text: how letters compare and where a path is cut.
#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin::platform::linux_host {

/// The letters A to Z in lower case; all other bytes as they are.
[[nodiscard]] char LowerAscii(char c);
[[nodiscard]] std::string LowerAscii(std::string_view text);

/// Equal for names that differ in case only. Bytes that are no UTF-8 stay apart from each other.
[[nodiscard]] std::string CaseFolded(std::string_view name);

/// Blanks of one line of a text file, the CR of a line end of two bytes included.
inline constexpr std::string_view kBlanks = " \t\r";
[[nodiscard]] std::string_view Trimmed(std::string_view text);
void SkipBlanks(std::string_view& text);

/// What stands between the separators; empty parts are left out. Points into `text`.
[[nodiscard]] std::vector<std::string_view> Parts(std::string_view text, char separator);

/// False unless the whole of `text` is one number.
template <typename T>
[[nodiscard]] bool ReadNumber(std::string_view text, T& number, int base = 10) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number, base);
  return result.ec == std::errc() && result.ptr == end;
}

}  // namespace tallowin::platform::linux_host
