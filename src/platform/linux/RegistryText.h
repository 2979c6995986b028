// The two encodings of registry files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// UTF-16LE from UTF-8. A byte that is no UTF-8 becomes a lone low surrogate, U+DC80 for 0x80 to
/// U+DCFF for 0xFF, so that any bytes come back as they were.
[[nodiscard]] std::string ToUtf16(std::string_view utf8);

/// The reverse. Nothing if the bytes are no whole number of characters, or if they hold a lone
/// surrogate other than those.
[[nodiscard]] std::optional<std::string> FromUtf16(std::string_view utf16);

}  // namespace tallowin::platform::linux_host
