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

/// What follows a percent sign stands for files, names and icons that a session does not give.
void AppendWithoutCode(std::string_view exec, std::size_t& at, std::string& word) {
  if (exec[at] != '%') {
    word += exec[at];
  } else if (++at < exec.size() && exec[at] == '%') {
    word += '%';
  }
}

/// Takes the inside of a quotation that begins at `at`. False if it has no end.
bool TakeQuoted(std::string_view exec, std::size_t& at, std::string& word) {
  for (++at; at < exec.size(); ++at) {
    if (exec[at] == '"') return true;
    if (exec[at] == '\\' && at + 1 < exec.size()) {
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
    } else if (exec[at] == '"') {
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
  bool ours = false;
  for (std::string_view line : Parts(file.text, '\n')) {
    line = Trimmed(line);
    if (line.starts_with('[')) ours = line == "[Desktop Entry]";
    const std::size_t sign = line.find('=');
    if (!ours || line.starts_with('#') || sign == std::string_view::npos) continue;
    const std::string_view key = Trimmed(line.substr(0, sign));
    if (std::ranges::find(kKeys, key) == kKeys.end()) continue;
    values_.insert_or_assign(std::string(key), std::string(Trimmed(line.substr(sign + 1))));
  }
}

std::string DesktopEntry::Text(const std::string& key) const {
  const auto value = values_.find(key);
  return value == values_.end() ? std::string() : Unescaped(value->second);
}

bool DesktopEntry::Is(const std::string& key, std::string_view value) const {
  return Text(key) == value;
}

bool DesktopEntry::NamesOneOf(const std::string& key,
                              const std::vector<std::string>& desktops) const {
  const std::string list = Text(key);
  return std::ranges::any_of(Parts(list, ';'), [&](std::string_view name) {
    return std::ranges::find(desktops, Trimmed(name)) != desktops.end();
  });
}

bool DesktopEntry::IsStarted(const std::vector<std::string>& desktops) const {
  if (Is("Hidden", "true") || Is("Hidden", "1")) return false;
  if (values_.contains("Type") && !Is("Type", "Application")) return false;
  if (values_.contains("OnlyShowIn") && !NamesOneOf("OnlyShowIn", desktops)) return false;
  if (NamesOneOf("NotShowIn", desktops)) return false;
  if (Is("X-GNOME-Autostart-enabled", "false") && HonoursEnabledSwitch(desktops)) return false;
  return !Text("Exec").empty() || !whole_;
}

std::string DesktopEntry::Command() const {
  const std::string exec = Text("Exec");
  const auto words = WordsOfExec(exec);
  return words ? JoinedWords(*words) : exec;
}

}  // namespace tallowin::platform::linux_host
