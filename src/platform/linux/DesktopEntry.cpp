#include "platform/linux/DesktopEntry.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::array<std::string_view, 7> kKeys = {
    "Exec", "Hidden", "NotShowIn", "OnlyShowIn", "TryExec", "Type", "X-GNOME-Autostart-enabled"};

/// The escapes of a value: \s \n \t \r and the backslash itself.
std::string Unescaped(std::string_view value) {
  constexpr std::string_view kLetters = "sntr\\";
  constexpr std::string_view kMeanings = " \n\t\r\\";
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const std::size_t letter = value[i] == '\\' && i + 1 < value.size()
                                   ? kLetters.find(value[i + 1])
                                   : std::string_view::npos;
    if (letter != std::string_view::npos) {
      text += kMeanings[letter];
      ++i;
    } else {
      text += value[i];
    }
  }
  return text;
}

bool IsLetter(char c) { return LowerAscii(c) >= 'a' && LowerAscii(c) <= 'z'; }

/// A letter behind a percent sign stands for files, names and icons that a session does not give.
void AppendWithoutCode(std::string_view exec, std::size_t& at, std::string& word) {
  const char next = exec[at] == '%' && at + 1 < exec.size() ? exec[at + 1] : '\0';
  if (IsLetter(next)) {
    ++at;
    return;
  }
  word += exec[at];
  if (next == '%') ++at;
}

/// Takes the inside of a quotation that begins at `at`. False if it has no end.
bool TakeQuoted(std::string_view exec, std::size_t& at, std::string& word) {
  const char quote = exec[at];
  for (++at; at < exec.size(); ++at) {
    if (exec[at] == quote) return true;
    if (quote == '"' && exec[at] == '\\' && at + 1 < exec.size()) {
      word += exec[++at];
    } else {
      AppendWithoutCode(exec, at, word);
    }
  }
  return false;
}

/// Nothing if the quoting is broken. A word that was a field code alone is left out.
std::optional<std::vector<std::string>> WordsOfExec(std::string_view exec) {
  std::vector<std::string> words;
  std::string word;
  bool quoted = false;
  for (std::size_t at = 0; at <= exec.size(); ++at) {
    if (at == exec.size() || exec[at] == ' ' || exec[at] == '\t') {
      if (!word.empty() || quoted) words.push_back(word);
      word.clear();
      quoted = false;
    } else if (exec[at] == '"' || exec[at] == '\'') {
      quoted = true;
      if (!TakeQuoted(exec, at, word)) return std::nullopt;
    } else if (exec[at] == '\\' && at + 1 < exec.size()) {
      word += exec[++at];
    } else {
      AppendWithoutCode(exec, at, word);
    }
  }
  return words;
}

/// The desktops whose session programs honour the switch that their settings write.
bool HonoursEnabledSwitch(const std::vector<std::string>& desktops) {
  constexpr std::array<std::string_view, 6> kNames = {"GNOME",      "Unity", "Budgie",
                                                      "X-Cinnamon", "MATE",  "Pantheon"};
  return std::ranges::any_of(desktops, [&](const std::string& desktop) {
    return std::ranges::find(kNames, desktop) != kNames.end();
  });
}

using Values = std::map<std::string, std::string>;

std::string TextOf(const Values& values, const std::string& key) {
  const auto value = values.find(key);
  return value == values.end() ? std::string() : Unescaped(value->second);
}

std::vector<std::string> NamesOf(const Values& values, const std::string& key) {
  std::vector<std::string> names;
  const std::string list = TextOf(values, key);
  for (const std::string_view name : Parts(list, ';')) names.emplace_back(Trimmed(name));
  return names;
}

bool Starts(const Values& values, const std::vector<std::string>& desktops,
            const DesktopEntry::ProgramTest& isProgram) {
  // What brings an entry into force may be written in any case, and what switches it off has to be
  // as every session understands it.
  if (TextOf(values, "Hidden") == "true") return false;
  if (values.contains("Type") && LowerAscii(TextOf(values, "Type")) != "application") return false;
  const auto same = [](const std::string& a, const std::string& b) {
    return LowerAscii(a) == LowerAscii(b);
  };
  const std::vector<std::string> only = NamesOf(values, "OnlyShowIn");
  if (values.contains("OnlyShowIn") &&
      std::ranges::find_first_of(only, desktops, same) == only.end()) {
    return false;
  }
  const std::vector<std::string> except = NamesOf(values, "NotShowIn");
  if (std::ranges::find_first_of(except, desktops) != except.end()) return false;
  const bool off = TextOf(values, "X-GNOME-Autostart-enabled") == "false";
  if (off && HonoursEnabledSwitch(desktops)) return false;
  const std::string needed = TextOf(values, "TryExec");
  return !TextOf(values, "Exec").empty() && (needed.empty() || isProgram(needed));
}

/// How a session may take what stands twice.
struct Manner {
  bool takesFirst = false;
  bool oneGroup = false;
};

/// The line ends behind backslashes are taken away, with these.
std::string WithJoinedLines(std::string_view text) {
  std::string joined;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "\\\n") {
      ++i;
    } else if (text.substr(i, 3) == "\\\r\n") {
      i += 2;
    } else {
      joined += text[i];
    }
  }
  return joined;
}

Values Read(std::string_view text, Manner manner) {
  Values values;
  bool ours = false;
  int groups = 0;
  for (std::string_view line : Parts(text, '\n')) {
    line = Trimmed(line);
    if (line.starts_with('[')) {
      ours = line == "[Desktop Entry]" && (++groups == 1 || !manner.oneGroup);
    }
    const std::size_t sign = line.find('=');
    if (!ours || line.starts_with('#') || sign == std::string_view::npos) continue;
    const std::string_view key = Trimmed(line.substr(0, sign));
    if (std::ranges::find(kKeys, key) == kKeys.end()) continue;
    std::string value(Trimmed(line.substr(sign + 1)));
    if (manner.takesFirst) {
      values.try_emplace(std::string(key), std::move(value));
    } else {
      values.insert_or_assign(std::string(key), std::move(value));
    }
  }
  return values;
}

}  // namespace

std::string JoinedWords(const std::vector<std::string>& words) {
  if (words.size() == 1) return words.front();
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    if (!word.empty() && word.find_first_of(" \t\"'") == std::string::npos) {
      line += word;
      continue;
    }
    line += '"';
    for (const char c : word) {
      if (c == '"' || c == '\\') line += '\\';
      line += c;
    }
    line += '"';
  }
  return line;
}

DesktopEntry::DesktopEntry(const BoundedText& file) : whole_(file.whole) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string_view text = file.text;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const auto add = [this](std::string_view from, Manner manner) {
    Values values = Read(from, manner);
    const bool known = std::ranges::find(readings_, values) != readings_.end();
    if (!known) readings_.push_back(std::move(values));
  };
  const std::string joined = WithJoinedLines(text);
  for (const bool first : {true, false}) {
    for (const bool oneGroup : {true, false}) {
      add(text, {first, oneGroup});
      if (joined.size() != text.size()) add(joined, {first, oneGroup});
    }
  }
}

bool DesktopEntry::IsStarted(const std::vector<std::string>& desktops,
                             const ProgramTest& isProgram) const {
  return !whole_ || std::ranges::any_of(readings_, [&](const Values& values) {
    return Starts(values, desktops, isProgram);
  });
}

std::string DesktopEntry::Command() const {
  std::vector<std::string> commands;
  for (const Values& values : readings_) {
    const std::string exec = TextOf(values, "Exec");
    const auto words = WordsOfExec(exec);
    std::string command = words ? JoinedWords(*words) : exec;
    const bool known = std::ranges::find(commands, command) != commands.end();
    if (!command.empty() && !known) commands.push_back(std::move(command));
  }
  std::string all;
  for (const std::string& command : commands) all += (all.empty() ? "" : "; ") + command;
  return all;
}

}  // namespace tallowin::platform::linux_host
