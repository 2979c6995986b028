// What the targets ask of what comes back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallowin::fuzz {

/// A finding: `what` is printed, and the fuzzer keeps the input.
void Require(bool holds, const char* what);

[[nodiscard]] inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Takes the first line off the text, with its line feed.
[[nodiscard]] std::string_view TakeLine(std::string_view& text);

/// Valid UTF-8 in which no character steers a terminal, ends a line or sets a direction, by the
/// tables of another library than those of the suite. Line feeds and tabs are allowed.
[[nodiscard]] bool IsPlain(std::string_view text);
/// The same without those two.
[[nodiscard]] bool IsPlainLine(std::string_view text);

}  // namespace tallowin::fuzz
