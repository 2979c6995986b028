// Shutting down through the login manager.
#pragma once

#include <string>
#include <utility>

#include "platform/SystemShutdown.h"

namespace tallowin::platform::linux_host {

/// The login manager lets the user of the machine's only local session do this without a password.
/// Nobody is asked for one: an alarm has nobody who would answer.
class LinuxSystemShutdown : public SystemShutdown {
 public:
  /// `busAddress` names another bus than the system's, so that a test can play the login manager.
  explicit LinuxSystemShutdown(std::string busAddress = {}) : busAddress_(std::move(busAddress)) {}

  bool ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) override;

 private:
  std::string busAddress_;
};

}  // namespace tallowin::platform::linux_host
