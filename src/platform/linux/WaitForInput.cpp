#include "platform/linux/WaitForInput.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace tallowin::platform::linux_host {

bool WaitForInput(int descriptor, std::chrono::milliseconds limit) {
  using std::chrono::steady_clock;
  const auto deadline = steady_clock::now() + limit;
  pollfd waiting = {.fd = descriptor, .events = POLLIN, .revents = 0};
  int result = 0;
  do {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    result = poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
  } while (result < 0 && errno == EINTR);
  return result > 0;
}

}  // namespace tallowin::platform::linux_host
