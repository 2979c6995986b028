#include "platform/linux/IniText.h"

#include <algorithm>
#include <optional>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::string_view kIniBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kIniBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kIniBlanks) - first + 1);
}

bool SameName(std::string_view a, std::string_view b) {
  a = WithoutBlanks(a);
  b = WithoutBlanks(b);
  return a.size() == b.size() && LowerAscii(a) == LowerAscii(b);
}

/// Offsets in the text: a line's bytes, then its line end.
struct Line {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t next = 0;

  [[nodiscard]] std::string_view Of(std::string_view text) const {
    return text.substr(begin, end - begin);
  }
};

Line LineAt(std::string_view text, std::size_t begin) {
  const std::size_t feed = std::min(text.find('\n', begin), text.size());
  // Also where the line feed behind it is missing: it would be there once a line is added.
  const bool carriage = feed > begin && text[feed - 1] == '\r';
  return {begin, carriage ? feed - 1 : feed, std::min(feed + 1, text.size())};
}

/// A header that lacks its bracket is an ordinary line and ends no section.
std::optional<std::string_view> SectionName(std::string_view line) {
  line = WithoutBlanks(line);
  if (!line.starts_with('[')) return std::nullopt;
  const std::size_t close = line.find(']');
  if (close == std::string_view::npos) return std::nullopt;
  return line.substr(1, close - 1);
}

bool IsKey(std::string_view line, std::string_view key) {
  const std::string_view trimmed = WithoutBlanks(line);
  if (trimmed.empty() || trimmed.starts_with(';')) return false;
  return SameName(line.substr(0, line.find('=')), key);
}

struct Found {
  std::optional<Line> key;
  std::optional<Line> lastOfSection;  ///< the section's last line that is not blank
};

Found Find(std::string_view text, std::string_view section, std::string_view key) {
  Found found;
  std::size_t position = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  while (position < text.size()) {
    const Line line = LineAt(text, position);
    const std::string_view content = line.Of(text);
    position = line.next;
    if (const auto name = SectionName(content)) {
      if (found.lastOfSection) return found;
      if (SameName(*name, section)) found.lastOfSection = line;
    } else if (found.lastOfSection && IsKey(content, key)) {
      found.key = line;
      return found;
    } else if (found.lastOfSection && !WithoutBlanks(content).empty()) {
      found.lastOfSection = line;
    }
  }
  return found;
}

std::string LineEndOf(std::string_view text) {
  const std::size_t feed = text.find('\n');
  const bool bare = feed != std::string_view::npos && (feed == 0 || text[feed - 1] != '\r');
  return bare ? "\n" : "\r\n";
}

std::string WithValueInLine(std::string_view text, const Line& line, std::string_view value) {
  const std::size_t equals = std::min(text.find('=', line.begin), line.end);
  std::string changed(text.substr(0, equals));
  changed += '=';
  if (equals < line.end && !value.empty()) {
    const std::string_view rest = text.substr(equals + 1, line.end - equals - 1);
    changed += rest.substr(0, std::min(rest.find_first_not_of(kIniBlanks), rest.size()));
  }
  changed += value;
  changed += text.substr(line.end);
  return changed;
}

}  // namespace

std::string_view IniValue(std::string_view text, std::string_view section, std::string_view key) {
  const Found found = Find(text, section, key);
  if (!found.key) return {};
  const std::string_view line = found.key->Of(text);
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  std::string_view value = WithoutBlanks(line.substr(equals + 1));
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string WithIniValue(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view value) {
  const Found found = Find(text, section, key);
  if (found.key) return WithValueInLine(text, *found.key, value);

  const std::string lineEnd = LineEndOf(text);
  const std::size_t place = found.lastOfSection ? found.lastOfSection->next : text.size();
  std::string changed(text.substr(0, place));
  if (!changed.empty() && changed.back() != '\n') {
    changed += changed.back() == '\r' ? "\n" : lineEnd;
  }
  if (!found.lastOfSection) changed += "[" + std::string(section) + "]" + lineEnd;
  changed += std::string(key) + "=" + std::string(value) + lineEnd;
  changed += text.substr(place);
  return changed;
}

}  // namespace tallowin::platform::linux_host
