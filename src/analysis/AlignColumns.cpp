#include "analysis/AlignColumns.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "analysis/InvalidProcedureCall.h"
#include "core/LineRoutines.h"

namespace tallowin::analysis {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

using Widths = std::vector<std::ptrdiff_t>;

void PutBreak(std::string& text, std::size_t blanks) {
  if (blanks == 1) text += ' ';
  if (blanks > 1) text += '\t';
}

/// A tab counts as two blanks, and two blanks or more are one tab.
void NormaliseBreaks(std::string& text) {
  std::string normal;
  normal.reserve(text.size());
  std::size_t blanks = 0;
  for (const char c : text) {
    if (c == ' ' || c == '\t') {
      blanks += c == ' ' ? 1 : 2;
      continue;
    }
    PutBreak(normal, blanks);
    blanks = 0;
    normal += c;
  }
  PutBreak(normal, blanks);
  text = std::move(normal);
}

/// In characters, each of which takes one place: the bytes that go on with one are not counted.
std::ptrdiff_t LengthOf(std::string_view cell) {
  return std::count_if(cell.begin(), cell.end(),
                       [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
}

/// Calls `treat` with the number and the text of each cell but the last, and returns the last.
template <typename Treat>
std::string_view ForAllButLast(std::string_view line, Treat treat) {
  std::size_t column = 0;
  for (auto tab = line.find('\t'); tab != std::string_view::npos; tab = line.find('\t')) {
    treat(column++, line.substr(0, tab));
    line.remove_prefix(tab + 1);
  }
  return line;
}

Widths WidthsOf(const std::vector<std::string>& lines) {
  Widths widths;
  for (const std::string& line : lines) {
    (void)ForAllButLast(line, [&](std::size_t column, std::string_view cell) {
      if (column == widths.size()) widths.push_back(0);
      widths[column] = std::max(widths[column], LengthOf(cell));
    });
  }
  return widths;
}

void AppendAligned(std::string& result, std::string_view line, const Widths& widths, int gap) {
  const auto last = ForAllButLast(line, [&](std::size_t column, std::string_view cell) {
    const std::ptrdiff_t blanks = widths[column] + gap - LengthOf(cell);
    if (blanks < 0) throw InvalidProcedureCall();
    result.append(cell).append(static_cast<std::size_t>(blanks), ' ');
  });
  result.append(last).append(kLineEnd);
}

}  // namespace

std::string AlignColumns(std::string& text, std::int16_t gap) {
  NormaliseBreaks(text);
  const std::vector<std::string> lines = core::AllLines(text);
  const Widths widths = WidthsOf(lines);
  std::string result;
  for (const std::string& line : lines) AppendAligned(result, line, widths, gap);
  if (!result.empty()) result.resize(result.size() - kLineEnd.size());
  return result;
}

}  // namespace tallowin::analysis
