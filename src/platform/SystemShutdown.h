// The end of the whole machine.
#pragma once

#include <cstdint>

namespace tallowin::platform {

namespace shutdown {
inline constexpr std::uint32_t kShutdown = 1;
inline constexpr std::uint32_t kForce = 4;  ///< no program is asked, where the host can do that
}  // namespace shutdown

class SystemShutdown {
 public:
  virtual ~SystemShutdown() = default;

  /// Asks the system to shut down, and returns without waiting for that: what is done behind the
  /// call is still done if the system gives the time for it. `flags` is a sum of the constants
  /// above and must have kShutdown in it; `reserved` is 0. False if the system refused, or if there
  /// is nothing to ask.
  virtual bool ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) = 0;
};

}  // namespace tallowin::platform
