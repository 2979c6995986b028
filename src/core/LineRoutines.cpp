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

std::vector<std::string> AllLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const auto end = std::min(text.find('\r'), text.size());
    std::erase(lines.emplace_back(text.substr(0, end)), '\n');
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::vector<std::string> LastLines(std::string_view text, std::size_t back) {
  if (text.empty() && back > 0) return {};
  // Behind a CR at the very end there is no line that would count.
  if (text.ends_with('\r')) text.remove_suffix(1);
  std::vector<std::string> lines;
  for (bool more = true; more && lines.size() <= back;) {
    const auto end = text.rfind('\r');
    more = end != std::string_view::npos;
    std::string& line = lines.emplace_back(text.substr(more ? end + 1 : 0));
    std::erase(line, '\n');
    if (more) text = text.substr(0, end);
  }
  if (lines.size() < back) return {};
  if (lines.size() == back) lines.emplace_back();  // line 0
  std::reverse(lines.begin(), lines.end());
  return lines;
}

}  // namespace tallowin::core
