// How far the machine's time zone is from UTC.
#pragma once

#include <cstdint>

#include "platform/SystemClock.h"

namespace tallowin::nettools {

/// The hours to add to UTC, of the standard time in summer too. Zones of half hours are rounded to
/// whole ones, to the even neighbour where both are as near.
[[nodiscard]] std::int16_t GetUtcBiasHours(const platform::SystemClock& clock);

}  // namespace tallowin::nettools
