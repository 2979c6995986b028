// The helper's side of what is said over the socket pair.
#pragma once

#include "helper/Deeds.h"
#include "helper/Protocol.h"

namespace tallowin::helper {

/// Waits two seconds at most. False for a message that has not the size of a request.
[[nodiscard]] bool Receive(int parent, Request& request);

/// False if nobody is there to take it.
[[nodiscard]] bool Send(int parent, const Outcome& outcome);

}  // namespace tallowin::helper
