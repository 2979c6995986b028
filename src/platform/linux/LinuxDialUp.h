// Dial-up links as the network manager knows them.
#pragma once

#include <string>
#include <utility>

#include "platform/DialUp.h"

namespace tallowin::platform::linux_host {

/// A link is known by the path of its active connection, its entry by the connection's name.
class LinuxDialUp : public DialUp {
 public:
  /// `busAddress` names another bus than the system's, so that a test can play the manager.
  explicit LinuxDialUp(std::string busAddress = {}) : busAddress_(std::move(busAddress)) {}

  RasResult RasEnumConnections(std::span<RasConnection> connections, std::size_t& count) override;
  RasResult RasHangUp(const RasConnection& connection) override;

 private:
  std::string busAddress_;
};

}  // namespace tallowin::platform::linux_host
