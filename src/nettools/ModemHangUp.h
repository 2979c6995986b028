// Hanging up the machine's dial-up connection.
#pragma once

#include <string>

#include "platform/DialUp.h"

namespace tallowin::nettools {

class ModemHangUp {
 public:
  explicit ModemHangUp(platform::DialUp& dialUp) : dialUp_(dialUp) {}

  /// The name of the connection to hang up. Nobody sets it, so it is empty, and what goes down are
  /// links without a name: a link that the user has named stays up.
  std::string ConnectionName;

  /// Hangs up every active connection of that name, blanks around it not counting. Nothing waits
  /// for the line to drop and nothing is logged. Throws RunTimeError 53 on a machine without
  /// dial-up.
  void HangUpConnection();

  /// What the newest call of the host gave.
  [[nodiscard]] platform::RasResult LastRasResult() const { return lastRasResult_; }

 private:
  platform::DialUp& dialUp_;
  platform::RasResult lastRasResult_ = platform::ras::kSuccess;
};

}  // namespace tallowin::nettools
