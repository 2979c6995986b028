#include "desktop/RowIndex.h"

#include <algorithm>

namespace tallowin::desktop {

namespace {

bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }

/// Moves `cut` back to the start of the UTF-8 character that it falls into. Bytes that are no
/// character are cut anywhere.
std::size_t CharacterStart(std::string_view text, std::size_t cut) {
  constexpr std::size_t kLongestTail = 3;
  for (std::size_t back = 0; back <= kLongestTail && back <= cut; ++back) {
    if ((static_cast<unsigned char>(text[cut - back]) & 0xC0U) != 0x80) return cut - back;
  }
  return cut;
}

std::size_t LineEndLength(std::string_view line) {
  if (line.ends_with("\r\n")) return 2;
  return !line.empty() && IsLineEnd(line.back()) ? 1 : 0;
}

}  // namespace

void RowIndex::Clear() {
  starts_.assign(1, 0);
  indexed_ = 0;
}

void RowIndex::ExtendTo(std::string_view text) {
  std::size_t position = indexed_;
  indexed_ = text.size();
  const bool splitLineEnd = position > 0 && position < text.size() && text[position - 1] == '\r' &&
                            text[position] == '\n';
  if (splitLineEnd) starts_.back() = ++position;
  while (position < text.size()) {
    const std::size_t full = starts_.back() + MaxRowBytes;
    const auto searched = text.substr(position, full + 1 - position);
    const auto found = std::find_if(searched.begin(), searched.end(), IsLineEnd);
    if (found != searched.end()) {
      position += static_cast<std::size_t>(found - searched.begin());
      const std::size_t length = text.substr(position).starts_with("\r\n") ? 2 : 1;
      position += length;
    } else if (text.size() > full) {
      position = CharacterStart(text, full);
    } else {
      return;
    }
    starts_.push_back(position);
  }
}

std::string_view RowIndex::WithLineEnd(std::string_view text, std::size_t row) const {
  const std::size_t end = row + 1 < starts_.size() ? starts_[row + 1] : indexed_;
  return text.substr(starts_[row], end - starts_[row]);
}

std::string_view RowIndex::Row(std::string_view text, std::size_t row) const {
  std::string_view line = WithLineEnd(text, row);
  line.remove_suffix(LineEndLength(line));
  return line;
}

bool RowIndex::HasLineEnd(std::string_view text, std::size_t row) const {
  return LineEndLength(WithLineEnd(text, row)) > 0;
}

std::size_t RowIndex::RowAt(std::size_t position) const {
  const auto after = std::upper_bound(starts_.begin(), starts_.end(), position);
  return static_cast<std::size_t>(after - starts_.begin()) - 1;
}

}  // namespace tallowin::desktop
