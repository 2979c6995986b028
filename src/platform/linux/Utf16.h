// UTF-16 in files as UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// The units of little-endian bytes; an odd byte at the end is left out.
[[nodiscard]] std::u16string Utf16Units(std::span<const std::uint8_t> bytes);

/// U+FFFD stands for each half of a pair that has lost its other half.
[[nodiscard]] std::string Utf8FromUtf16(std::u16string_view units);

}  // namespace tallowin::platform::linux_host
