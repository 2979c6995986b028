// Names and commands from foreign files in the form in which a registry gives them out.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// What fits the buffers of an enumeration, of 240 bytes with a NUL each.
inline constexpr std::size_t kEnumerableBytes = 239;

/// Control characters, and all beyond ASCII where the bytes are no UTF-8, are written as "\x0A":
/// a file's name or command must not pose as further lines of a question.
[[nodiscard]] std::string Printable(std::string_view text);

/// Cut to kEnumerableBytes, between two characters, with three dots at the end.
[[nodiscard]] std::string ShortenedText(std::string_view text);

/// A name from `name` that is no longer than kEnumerableBytes and differs from those in `taken` by
/// more than case. A long one keeps its beginning and its end and gets a checksum. `taken` holds
/// folded names; the result is added.
[[nodiscard]] std::string UniqueName(const std::string& name, std::set<std::string>& taken);

}  // namespace tallowin::platform::linux_host
