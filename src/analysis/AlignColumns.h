// Tab-separated text as lines whose columns stand under each other in a fixed-pitch font.
#pragma once

#include <cstdint>
#include <string>

namespace tallowin::analysis {

/// Between two columns stand `gap` blanks or more. Any run of two or more blanks and of tabs counts
/// as one column break, so that an empty cell vanishes and its neighbours move to the left; a
/// single blank stays in its cell. The last cell of a line takes part in no column's width.
///
/// `text` is left with one tab for each column break. The result has no line end behind its last
/// line, which is an empty one where `text` ends in CR LF. Throws 5 where a gap below zero would
/// push a cell into the one before it.
[[nodiscard]] std::string AlignColumns(std::string& text, std::int16_t gap);

}  // namespace tallowin::analysis
