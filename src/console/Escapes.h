// Any bytes as one line of text that a terminal can take, and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin::console {

/// One line of valid UTF-8: line feed, carriage return, tab and backslash appear as \n, \r, \t and
/// \\, and whatever else could steer a terminal, or is no UTF-8, as its bytes, "\x1b" for example.
[[nodiscard]] std::string Escape(std::string_view bytes);

/// The bytes that Escape made the text from; nothing if a backslash begins no such escape.
[[nodiscard]] std::optional<std::string> Unescape(std::string_view text);

/// The first `count` characters of the bytes, and never half a character.
[[nodiscard]] std::string_view FirstCharacters(std::string_view bytes, std::size_t count);

/// Every byte that is not the inner part of a UTF-8 character counts as one.
[[nodiscard]] std::size_t CountCharacters(std::string_view bytes);

}  // namespace tallowin::console
