// What the IP stack counts and has open, as tab-separated text.
#pragma once

#include <string>

#include "platform/IpStatistics.h"
#include "platform/RunTimeError.h"

namespace tallowin::analysis {

/// Error 9 at the first row that a table has no room for.
class TableOverflow : public platform::RunTimeError {
 public:
  explicit TableOverflow(const char* missing)
      : RunTimeError(platform::error::kSubscriptOutOfRange, "Subscript out of range"),
        missing_(missing) {}
  /// What the text is without, in words.
  [[nodiscard]] const char* Missing() const { return missing_; }

 private:
  const char* missing_;
};

class Netstat {
 public:
  explicit Netstat(platform::IpStatistics& statistics) : statistics_(statistics) {}

  /// Rows of protocol, item, value and packet direction: IP, TCP, UDP and ICMP. Counters are shown
  /// as signed numbers. In place of a group that cannot be had stands a text without a line end,
  /// which runs on into the next group's first row.
  [[nodiscard]] std::string GetStatsText();

  /// Rows of protocol, local and remote address and state: TCP, then UDP, whose rows end behind the
  /// local address. A table that cannot be had has no rows. Ports from 32768 on show as 0.
  ///
  /// Each table holds 101 rows. Throws at the one after these, and `text` then has the rows that
  /// stand before it.
  void GetConnectionsText(std::string& text);
  [[nodiscard]] std::string GetConnectionsText();

 private:
  platform::IpStatistics& statistics_;
};

}  // namespace tallowin::analysis
