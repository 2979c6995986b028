#include "platform/linux/UnitFile.h"

#include <algorithm>
#include <array>

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

/// In the order in which they run; the main one is looked for first.
constexpr std::array<const char*, 4> kCommandKeys = {"ExecStart", "ExecCondition", "ExecStartPre",
                                                     "ExecStartPost"};
constexpr std::array<const char*, 2> kActivationKeys = {"Unit", "Service"};

/// A code of two bytes may stand for a whole name, so that a file would decide how long this gets.
constexpr std::size_t kLongestCommand = std::size_t{128} << 10U;

bool IsComment(std::string_view line) { return line.starts_with('#') || line.starts_with(';'); }

/// Up to a LF, CR or NUL, or CR and LF together, which are taken away as well.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of(std::string_view("\n\r\0", 3)), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end);
  text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, text.size()));
  return line;
}

/// A backslash that stands behind another one is only a letter.
bool GoesOn(std::string_view line) {
  const std::size_t last = line.find_last_not_of('\\');
  const std::size_t signs = line.size() - (last == std::string_view::npos ? 0 : last + 1);
  return signs % 2 == 1;
}

/// Lines that end in a backslash go on in the next one, which may be empty; comments between them
/// are passed over.
std::vector<std::string> WholeLines(std::string_view text) {
  std::vector<std::string> lines;
  std::string begun;
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    SkipBlanks(line);
    if (IsComment(line)) continue;
    const bool goesOn = GoesOn(line);
    if (goesOn) line.remove_suffix(1);
    begun.append(line);
    if (goesOn) {
      begun += ' ';
    } else {
      lines.push_back(std::move(begun));
      begun.clear();
    }
  }
  if (!begun.empty()) lines.push_back(std::move(begun));
  return lines;
}

bool Matters(std::string_view key, std::string_view section) {
  if (std::ranges::find(kCommandKeys, key) != kCommandKeys.end()) {
    return section == "[Service]" || section == "[Socket]";
  }
  if (key == "Unit") return section == "[Timer]" || section == "[Path]";
  return key == "Service" && section == "[Socket]";
}

std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    // "\x2d" and the like, which stand for bytes that a unit's name cannot hold.
    constexpr std::string_view kDigits = "0123456789abcdef";
    if (text.substr(i, 2) == "\\x" && i + 3 < text.size()) {
      const std::size_t high = kDigits.find(text[i + 2]);
      const std::size_t low = kDigits.find(text[i + 3]);
      if (high != std::string_view::npos && low != std::string_view::npos) {
        plain += static_cast<char>(high * 16 + low);
        i += 3;
        continue;
      }
    }
    plain += text[i] == '-' ? '/' : text[i];
  }
  return plain;
}

/// Codes that are not known here stay as they are.
std::string Meaning(char code, const UnitName& unit, const UnitMeanings& meanings) {
  switch (code) {
    case '%':
      return "%";
    case 'i':
      return unit.instance;
    case 'I':
      return Unescaped(unit.instance);
    case 'n':
      return unit.Text();
    case 'N':
      return unit.Text().substr(0, unit.Text().size() - unit.type.size() - 1);
    case 'p':
      return unit.prefix;
    case 'P':
      return Unescaped(unit.prefix);
    case 'f':
      return "/" + Unescaped(unit.hasInstance ? unit.instance : unit.prefix);
    default: {
      const auto meaning = meanings.find(code);
      return meaning == meanings.end() ? std::string{'%', code} : meaning->second;
    }
  }
}

std::string Expanded(std::string_view text, const UnitName& unit, const UnitMeanings& meanings) {
  std::string expanded;
  for (std::size_t i = 0; i < text.size() && expanded.size() < kLongestCommand; ++i) {
    if (text[i] == '%' && i + 1 < text.size()) {
      expanded += Meaning(text[++i], unit, meanings);
    } else {
      expanded += text[i];
    }
  }
  return expanded;
}

/// Blanks part words outside of single and double quotes.
std::vector<std::string> WordsOfCommand(std::string_view line) {
  std::vector<std::string> words;
  std::string word;
  bool begun = false;
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote == 0 && kBlanks.find(c) != std::string_view::npos) {
      if (begun) words.push_back(word);
      word.clear();
      begun = false;
      continue;
    }
    begun = true;
    if (c == quote) {
      quote = 0;
    } else if (quote == 0 && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == '\\' && i + 1 < line.size() && line[i + 1] != 'x') {
      word += line[++i];
    } else {
      word += c;
    }
  }
  if (begun) words.push_back(word);
  return words;
}

/// Signs before the program say how it is run; an "@" says that the next word is not an argument.
std::string CommandOfLine(std::string_view line) {
  std::vector<std::string> words = WordsOfCommand(line);
  if (words.empty()) return {};
  const std::size_t program = std::min(words[0].find_first_not_of("@-:+!|"), words[0].size());
  const bool otherName = words[0].substr(0, program).find('@') != std::string::npos;
  words[0].erase(0, program);
  if (otherName && words.size() > 1) words.erase(words.begin() + 1);
  return JoinedWords(words);
}

}  // namespace

UnitName UnitName::Parse(std::string_view name) {
  constexpr std::array<std::string_view, 11> kTypes = {"service", "socket", "target",    "timer",
                                                       "path",    "mount",  "automount", "swap",
                                                       "slice",   "scope",  "device"};
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  UnitName unit;
  const std::string_view type = name.substr(dot + 1);
  if (std::ranges::find(kTypes, type) == kTypes.end()) return {};
  unit.type = type;
  const std::size_t at = std::min(name.find('@'), dot);
  unit.hasInstance = at < dot;
  unit.prefix = name.substr(0, at);
  if (unit.hasInstance) unit.instance = name.substr(at + 1, dot - at - 1);
  return unit;
}

std::string UnitName::Text() const {
  return prefix + (hasInstance ? "@" + instance : std::string()) + "." + type;
}

UnitFile::UnitFile(const BoundedText& file) {
  std::string section;
  for (const std::string& whole : WholeLines(file.text)) {
    const std::string_view line = Trimmed(whole);
    if (line.starts_with('[')) section = line;
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos) continue;
    const std::string_view key = Trimmed(line.substr(0, sign));
    if (!Matters(key, section)) continue;
    assignments.push_back({std::string(key), std::string(Trimmed(line.substr(sign + 1)))});
  }
}

void UnitCommands::Apply(const UnitFile& file) {
  for (const auto& [key, value] : file.assignments) {
    // An empty assignment drops those before it.
    if (value.empty()) {
      values_.erase(key);
    } else {
      values_[key].push_back(value);
    }
  }
}

const std::vector<std::string>& UnitCommands::Values(const std::string& key) const {
  static const std::vector<std::string> kNone;
  const auto values = values_.find(key);
  return values == values_.end() ? kNone : values->second;
}

std::string UnitCommands::Command(const UnitName& unit, const UnitMeanings& meanings) const {
  std::string commands;
  for (const char* key : kCommandKeys) {
    for (const std::string& line : Values(key)) {
      if (!commands.empty()) commands += "; ";
      commands += CommandOfLine(Expanded(line, unit, meanings));
      if (commands.size() >= kLongestCommand) return commands.substr(0, kLongestCommand);
    }
    if (std::string_view(key) == "ExecStart" && !commands.empty()) break;
  }
  return commands;
}

std::string UnitCommands::Activated(const UnitName& unit, const UnitMeanings& meanings) const {
  for (const char* key : kActivationKeys) {
    const std::vector<std::string>& names = Values(key);
    if (!names.empty()) return Expanded(names.back(), unit, meanings);
  }
  return {};
}

}  // namespace tallowin::platform::linux_host
