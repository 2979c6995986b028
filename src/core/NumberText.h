// Texts that are numbers, by the rules of the run-time whose conventions the suite keeps.
#pragma once

#include <optional>
#include <string_view>

namespace tallowin::core {

/// The number that a text stands for; nothing where it is none. Decimal, with white space around
/// it, a sign before or behind it or brackets for minus, a dollar sign, commas among the digits, a
/// fraction, an exponent after "e" or "d"; or "&H" hexadecimal and "&O" or "&" octal, which are 16
/// bits with sign where they fit into these. Infinite where it is too large.
[[nodiscard]] std::optional<double> NumberOfText(std::string_view text);

/// True for a number that is not too large.
[[nodiscard]] bool IsNumeric(std::string_view text);

}  // namespace tallowin::core
