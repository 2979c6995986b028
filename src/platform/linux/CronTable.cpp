#include "platform/linux/CronTable.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

std::string_view TakeWord(std::string_view& text) {
  SkipBlanks(text);
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  SkipBlanks(text);
  return word;
}

/// A percent sign ends the command, and what follows is its input.
std::string WithoutInput(std::string_view text) {
  std::string command;
  for (std::size_t i = 0; i < text.size() && text[i] != '%'; ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '%') ++i;
    command += text[i];
  }
  command.resize(command.find_last_not_of(kBlanks) + 1);
  return command;
}

}  // namespace

std::vector<RebootLine> RebootLines(std::string_view table, TableOf kind) {
  std::vector<RebootLine> lines;
  for (const std::string_view line : Parts(table, '\n')) {
    std::string_view rest = line;
    std::string_view when = TakeWord(rest);
    // With this sign some crons do not log the start.
    if (when.starts_with('-')) when.remove_prefix(1);
    if (LowerAscii(when) != "@reboot") continue;
    RebootLine found{.line = std::string(line)};
    if (kind == TableOf::System) found.user = TakeWord(rest);
    found.command = WithoutInput(rest);
    if (!found.command.empty()) lines.push_back(std::move(found));
  }
  return lines;
}

std::vector<AutostartEntry> CronEntries(const std::string& table,
                                        const std::vector<RebootLine>& lines,
                                        std::int64_t changed) {
  std::vector<AutostartEntry> entries;
  std::map<std::string, int> seen;
  for (const RebootLine& line : lines) {
    std::string name = "cron @reboot: " + table + ": ";
    if (!line.user.empty()) name += line.user + ": ";
    name += line.command;
    const int times = ++seen[name];
    if (times > 1) name += " #" + std::to_string(times);
    entries.push_back({.name = std::move(name),
                       .command = line.command,
                       .changed = changed,
                       .files = {table},
                       .line = line.line});
  }
  return entries;
}

std::string WithoutLine(std::string_view table, std::string_view line) {
  for (std::size_t begin = 0; begin < table.size();) {
    const std::size_t end = std::min(table.find('\n', begin), table.size());
    if (table.substr(begin, end - begin) == line) {
      const std::size_t next = std::min(end + 1, table.size());
      return std::string(table.substr(0, begin)) + std::string(table.substr(next));
    }
    begin = end + 1;
  }
  return std::string(table);
}

}  // namespace tallowin::platform::linux_host
