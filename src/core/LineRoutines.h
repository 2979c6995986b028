// Lines of a text whose line ends are CR LF.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin::core {

/// The number of CRs, and one more if the text does not end in a CR. A text that ends in CR LF
/// counts one more than its lines: the LF stands behind the last CR.
[[nodiscard]] std::size_t CountLines(std::string_view text);

/// Line `number` from 1, without CR and LF; empty for 0 and beyond the end.
[[nodiscard]] std::string GetLine(std::string_view text, std::size_t number);

/// The lines 1 to CountLines, each as GetLine gives it, in one walk through the text.
[[nodiscard]] std::vector<std::string> AllLines(std::string_view text);

/// The lines from CountLines - `back` up to CountLines, each as GetLine gives it, at the cost of
/// these lines alone, however long the text is. Nothing if CountLines is less than `back`.
[[nodiscard]] std::vector<std::string> LastLines(std::string_view text, std::size_t back);

}  // namespace tallowin::core
