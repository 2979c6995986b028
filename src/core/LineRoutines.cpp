#include "core/LineRoutines.h"

#include <algorithm>

namespace tallowin::core {

std::size_t CountLines(std::string_view text) {
  const auto ends = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
  return text.empty() || text.back() == '\r' ? ends : ends + 1;
}

std::string GetLine(std::string_view text, std::size_t number) {
  if (number == 0) return {};
  std::size_t start = 0;
  for (std::size_t passed = 1; passed < number; ++passed) {
    const auto end = text.find('\r', start);
    if (end == std::string_view::npos) return {};
    start = end + 1;
  }
  std::string line(text.substr(start, text.find('\r', start) - start));
  std::erase(line, '\n');
  return line;
}

}  // namespace tallowin::core
