// Where the rows of a growing text start.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tallowin::desktop {

/// A row is a line of the text, or a piece of a line that is too long to be laid out in one go.
/// Line ends are CR LF, LF and a lone CR. The index holds no text: each call is given the whole
/// text.
class RowIndex {
 public:
  static constexpr std::size_t MaxRowBytes = 1024;

  void Clear();

  /// `text` starts with the text of the call before; the cost is that of what was added since.
  void ExtendTo(std::string_view text);

  /// At least one: an empty text is an empty row.
  [[nodiscard]] std::size_t Count() const { return starts_.size(); }

  /// The row's bytes without its line end.
  [[nodiscard]] std::string_view Row(std::string_view text, std::size_t row) const;

  /// False if the line goes on in the next row, or is the last one.
  [[nodiscard]] bool HasLineEnd(std::string_view text, std::size_t row) const;

  /// The row that the byte at `position` stands in.
  [[nodiscard]] std::size_t RowAt(std::size_t position) const;

 private:
  [[nodiscard]] std::string_view WithLineEnd(std::string_view text, std::size_t row) const;

  std::vector<std::size_t> starts_{0};
  std::size_t indexed_ = 0;
};

}  // namespace tallowin::desktop
