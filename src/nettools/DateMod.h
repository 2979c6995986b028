// The text of a daytime server.
#pragma once

#include <string>
#include <string_view>

#include "core/StatusLog.h"

namespace tallowin::nettools {

/// "Mon Nov 5 12:34:56 2026" as "05/Nov/2026 12:34:56", by columns that hold for one digit of the
/// day. With two digits the time starts a column later and its last digit is cut off, so that the
/// clock will be up to 50 seconds off from the 10th of a month on: the columns are not to be
/// mended. A text without a month gives one that is no date; one without a day gives nothing, and a
/// line in the log.
[[nodiscard]] std::string ParseTimeText(std::string_view text, core::StatusLog& log);

}  // namespace tallowin::nettools
