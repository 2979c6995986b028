// Sizes of files in words.
#pragma once

#include <cstdint>
#include <string>

#include "platform/RegionalSettings.h"

namespace tallowin::analysis {

/// "1,023 bytes", "1.00KB (1,024 bytes)", "0.98MB (1,024,000 bytes)": about three digits and the
/// unit behind them, then all digits. The unit changes at powers of ten of the kilobytes.
[[nodiscard]] std::string FileSizeText(std::int32_t size, const platform::NumberMarks& marks);

}  // namespace tallowin::analysis
