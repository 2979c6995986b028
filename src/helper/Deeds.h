// The three things that the helper does.
#pragma once

#include <cstdint>

#include "helper/Protocol.h"

namespace tallowin::helper {

/// What came of a request. The socket is the caller's to close; -1 where there is none.
struct Outcome {
  std::int32_t error = 0;
  int socket = -1;
};

/// Refuses what it was not made for with EINVAL. Gives up every capability that this request does
/// not need before it does anything.
[[nodiscard]] Outcome Answer(const Request& request);

}  // namespace tallowin::helper
