// Names and commands from foreign files in the form in which a registry gives them out.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// What fits the buffers of an enumeration, of 240 bytes with a NUL each.
inline constexpr std::size_t kEnumerableBytes = 239;

/// Control characters, line ends and signs that turn the direction of writing, and all beyond ASCII
/// where the bytes are no UTF-8, are written as "\x0A": a file's name or command must not pose as
/// further lines of a question.
[[nodiscard]] std::string Printable(std::string_view text);

/// Cut to kEnumerableBytes, between two characters, with three dots at the end.
[[nodiscard]] std::string ShortenedText(std::string_view text);

/// Names that differ by more than case.
class UniqueNames {
 public:
  void Take(std::string_view name);
  /// From `name`, no longer than kEnumerableBytes, and taken from then on. A long one keeps its
  /// beginning and its end and gets a checksum, a repeated one a number.
  [[nodiscard]] std::string Make(const std::string& name);

 private:
  std::set<std::string> taken_;      // folded
  std::map<std::string, int> next_;  // number to try, for each folded name
};

}  // namespace tallowin::platform::linux_host
