// The system's socket errors in the vocabulary of the Windows socket library.
#pragma once

#include "platform/RunTimeError.h"

namespace tallowin::platform::linux_host {

/// Number and description of the Windows socket library for a value of errno. A value that has no
/// counterpart there is 10107 "System call failure".
[[nodiscard]] RunTimeError SocketError(int errnoValue);

/// 11001, the error of a name that has no address.
[[nodiscard]] RunTimeError HostNotFound();

}  // namespace tallowin::platform::linux_host
