// A table of cron, as far as it starts programs when the system starts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/AutostartSource.h"
#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {

struct RebootLine {
  std::string user = {};     ///< empty in a user's own table
  std::string command = {};  ///< without what cron would feed to it
  std::string line = {};     ///< as it stands in the table, without its end
};

enum class TableOf { System, User };  ///< a system's table names a user in each line

[[nodiscard]] std::vector<RebootLine> RebootLines(std::string_view table, TableOf kind);

/// The names of cron's lines hold their commands, since the place of a line changes with those
/// above it. A line that stands twice in a table has its number added.
[[nodiscard]] std::vector<AutostartEntry> CronEntries(const std::string& table,
                                                      const std::vector<RebootLine>& lines,
                                                      std::int64_t changed);

/// The table without the first line that reads `line`. Equal to `table` if it has none.
[[nodiscard]] std::string WithoutLine(std::string_view table, std::string_view line);

/// The lines of a system's table, for ParsedFiles.
struct SystemTable {
  explicit SystemTable(const BoundedText& file) : lines(RebootLines(file.text, TableOf::System)) {}

  std::vector<RebootLine> lines;
};

}  // namespace tallowin::platform::linux_host
