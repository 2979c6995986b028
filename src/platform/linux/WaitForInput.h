// Waiting for a descriptor alone, where no event of the program may run meanwhile.
#pragma once

#include <chrono>

namespace tallowin::platform::linux_host {

/// True as soon as the descriptor can be read or has ended (a pidfd: its process has), false once
/// the limit has passed. Signals do not cut the wait short.
bool WaitForInput(int descriptor, std::chrono::milliseconds limit);

}  // namespace tallowin::platform::linux_host
