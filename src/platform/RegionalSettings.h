// The clock, and dates and times in the forms of the user's region.
#pragma once

#include <chrono>
#include <string>

namespace tallowin::platform {

class RegionalSettings {
 public:
  using TimePoint = std::chrono::system_clock::time_point;
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
};

}  // namespace tallowin::platform
