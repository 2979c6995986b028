// The machine's clock and its time zone.
#pragma once

#include <chrono>
#include <cstdint>

namespace tallowin::platform {

class SystemClock {
 public:
  virtual ~SystemClock() = default;

  /// In minutes: UTC is the standard time of the machine's zone plus this. The same number in
  /// summer, when the clock on the wall shows another time.
  [[nodiscard]] virtual std::int32_t TimeZoneBias() const = 0;

  /// Sets the time of day on the wall, below 24 hours, and leaves the date there as it is. Throws
  /// 70 "Permission denied" if this user may not, 5 if the clock cannot show that time.
  virtual void SetTime(std::chrono::seconds timeOfDay) = 0;

  /// Sets the date on the wall and leaves the time of day there as it is. Throws like SetTime.
  virtual void SetDate(std::chrono::year_month_day date) = 0;
};

}  // namespace tallowin::platform
