// The system's resolver.
#pragma once

#include "platform/Names.h"

namespace tallowin::platform::linux_host {

/// Asks whatever the system asks for names: its table, the name service, the local network. A name
/// server that is dead costs about three seconds for each name that is tried, and not the fifteen
/// of the resolver's own settings, since the whole program stands still meanwhile. Nothing is
/// remembered: that is the name service's own business.
class LinuxNames : public Names {
 public:
  [[nodiscard]] std::int32_t InetAddr(const std::string& text) const override;
  [[nodiscard]] std::string InetNtoa(std::int32_t address) const override;
  [[nodiscard]] std::optional<std::int32_t> GetHostByName(const std::string& name) override;
  [[nodiscard]] std::optional<std::string> GetHostByAddr(std::int32_t address) override;
};

}  // namespace tallowin::platform::linux_host
