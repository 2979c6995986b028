// The clock, and dates and times in the forms of the user's region.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// What stands between the digits of a number.
struct NumberMarks {
  std::string decimalPoint = ".";
  std::string thousandsSeparator = ",";
};

class RegionalSettings {
 public:
  using TimePoint = std::chrono::system_clock::time_point;
  /// What a calendar and a clock on the wall show, of no time zone.
  using WallTime = std::chrono::local_seconds;
  virtual ~RegionalSettings() = default;

  [[nodiscard]] virtual TimePoint Now() const = 0;

  /// All in UTF-8 and local time; forms of the user's locale, the time zone of the machine.
  [[nodiscard]] virtual std::string LongDate(TimePoint time) const = 0;
  [[nodiscard]] virtual std::string ShortDate(TimePoint time) const = 0;
  /// The default form of a time, seconds included.
  [[nodiscard]] virtual std::string DefaultTime(TimePoint time) const = 0;
  /// "hh:mm:ss ampm": two-digit hours of the 12-hour clock, minutes, seconds, a blank and the
  /// locale's designator, in every locale.
  [[nodiscard]] virtual std::string TwelveHourTime(TimePoint time) const = 0;

  /// What the wall shows here at that time.
  [[nodiscard]] virtual WallTime ToWallTime(TimePoint time) const = 0;
  /// The short date, with four digits of the year and a month in digits, a blank and the default
  /// time: a text that ReadDate takes.
  [[nodiscard]] virtual std::string GeneralDate(WallTime time) const = 0;
  /// What such a text tells, or one of the form "day/month/year hours:minutes:seconds" whose month
  /// is an English name or its first three letters, in every locale. Throws 13 "Type mismatch" for
  /// anything else.
  [[nodiscard]] virtual WallTime ReadDate(std::string_view text) const = 0;

  [[nodiscard]] virtual NumberMarks Numbers() const = 0;
};

}  // namespace tallowin::platform
