// A table as text: rows end in CR LF, and a single tab stands between cells.
#pragma once

#include <string>
#include <string_view>

#include "forms/ListView.h"

namespace tallowin::analysis {

/// Control characters appear as their bytes, "\x0d" for example: foreign texts forge no line.
[[nodiscard]] std::string CellText(std::string_view text);

/// With a line end behind the last row; "Error LVToString" for a list without rows. Cells stand
/// as `CellText` has them.
[[nodiscard]] std::string LVToString(const forms::ListView& list);

/// Replaces the rows of the list by those of `text`, which loses its closing line ends. A list that
/// has too few columns gets more of them, captioned with their numbers. A line without any tab is
/// an error: it ends the filling, and the rows before it stand. The result is empty, or tells the
/// error.
std::string LVFromString(forms::ListView& list, std::string& text);

}  // namespace tallowin::analysis
