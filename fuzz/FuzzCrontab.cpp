// A table of cron: its lines for the start of the system, and the table without them.
#include <set>
#include <string>

#include "Check.h"
#include "platform/linux/CronTable.h"

namespace {

namespace linux_host = tallowin::platform::linux_host;
using tallowin::fuzz::Require;

void Look(const std::string& table, linux_host::TableOf kind) {
  const auto lines = linux_host::RebootLines(table, kind);
  std::set<std::string> names;
  for (const auto& entry : linux_host::CronEntries("/etc/crontab", lines, 0)) {
    Require(names.insert(entry.name).second, "no two entries have the same name");
    Require(!entry.command.empty() && entry.command.size() <= entry.line.size(),
            "a command is a part of its line");
  }

  std::string rest = table;
  constexpr std::size_t kEnough = 32;
  for (auto left = lines; !left.empty() && left.size() + kEnough > lines.size();) {
    const std::string removed = linux_host::WithoutLine(rest, left.front().line);
    Require(removed.size() < rest.size(), "a line that was found can be removed");
    Require(rest.size() - removed.size() <= left.front().line.size() + 1, "and nothing but it");
    const auto others = linux_host::RebootLines(removed, kind);
    Require(others.size() + 1 == left.size(), "the other lines stay");
    rest = removed;
    left = others;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string table(tallowin::fuzz::TextOf(data, size));
  Look(table, linux_host::TableOf::System);
  Look(table, linux_host::TableOf::User);
  return 0;
}
