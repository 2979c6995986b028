// Numbers in hexadecimal as users see them.
#pragma once

#include <cstdint>
#include <string>

namespace tallowin::analysis {

/// In upper case, with zeros in front only up to so many digits.
[[nodiscard]] std::string HexText(std::uint32_t number, std::size_t digits = 1);

}  // namespace tallowin::analysis
