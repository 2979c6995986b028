#include "platform/linux/RegistryFileLines.h"

#include <algorithm>

#include "platform/linux/RegistryText.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

}  // namespace

RegistryFileLines::RegistryFileLines(std::string_view content) : rest_(content) {
  utf16_ = rest_.starts_with(kUtf16Mark);
  if (utf16_) rest_.remove_prefix(kUtf16Mark.size());
  if (rest_.starts_with(kUtf8Mark)) rest_.remove_prefix(kUtf8Mark.size());
}

std::optional<std::string> RegistryFileLines::Next() {
  if (broken_ || rest_.empty()) return std::nullopt;
  ++number_;
  const std::string_view bytes = TakeLine();
  auto line = utf16_ ? FromUtf16(bytes) : std::string(bytes);
  broken_ = !line || line->find('\0') != std::string::npos;
  if (broken_) return std::nullopt;
  if (line->ends_with('\r')) line->pop_back();
  return line;
}

std::string_view RegistryFileLines::TakeLine() {
  const std::size_t end = FindLineFeed();
  const std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + (utf16_ ? 2 : 1), rest_.size()));
  return line;
}

std::size_t RegistryFileLines::FindLineFeed() const {
  std::size_t at = rest_.find('\n');
  if (!utf16_) return std::min(at, rest_.size());
  // Half of another character may be the same byte.
  const auto isLineFeed = [&] {
    return at % 2 == 0 && at + 1 < rest_.size() && rest_[at + 1] == 0;
  };
  while (at != std::string_view::npos && !isLineFeed()) at = rest_.find('\n', at + 1);
  return std::min(at, rest_.size());
}

}  // namespace tallowin::platform::linux_host
