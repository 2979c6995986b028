// The clock, and dates and times by the user's locale.
#pragma once

#include <ctime>

#include "platform/RegionalSettings.h"

namespace tallowin::platform::linux_host {

/// Every status line asks for its date and time, so the texts of the second asked for last are
/// kept, and the dates of its day. A new time zone of the machine holds from the next second on.
class LinuxRegionalSettings : public RegionalSettings {
 public:
  [[nodiscard]] TimePoint Now() const override { return std::chrono::system_clock::now(); }
  [[nodiscard]] std::string LongDate(TimePoint time) const override;
  [[nodiscard]] std::string ShortDate(TimePoint time) const override;
  [[nodiscard]] std::string DefaultTime(TimePoint time) const override;
  [[nodiscard]] std::string TwelveHourTime(TimePoint time) const override;
  [[nodiscard]] WallTime ToWallTime(TimePoint time) const override;
  [[nodiscard]] std::string GeneralDate(WallTime time) const override;
  [[nodiscard]] WallTime ReadDate(std::string_view text) const override;
  [[nodiscard]] NumberMarks Numbers() const override;

 private:
  struct Texts {
    std::time_t second = -1;
    std::tm local = {};
    std::string longDate, shortDate, defaultTime, twelveHourTime;
  };
  const Texts& TextsOf(TimePoint time) const;

  mutable Texts texts_;
};

}  // namespace tallowin::platform::linux_host
