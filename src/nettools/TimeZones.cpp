#include "nettools/TimeZones.h"

#include <cmath>

namespace tallowin::nettools {

std::int16_t GetUtcBiasHours(const platform::SystemClock& clock) {
  constexpr double kMinutesPerHour = 60.0;
  // The one rounding of the library that takes halves to even, unless somebody changes its mode.
  return static_cast<std::int16_t>(std::nearbyint(clock.TimeZoneBias() / kMinutesPerHour * -1.0));
}

}  // namespace tallowin::nettools
