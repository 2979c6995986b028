// Version resources by a reader of our own, language names by ICU.
#pragma once

#include "platform/VersionInfo.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

class LinuxVersionInfo : public VersionInfo {
 public:
  explicit LinuxVersionInfo(const WindowsDrive& drive) : drive_(drive) {}
  [[nodiscard]] std::unique_ptr<VersionBlock> GetFileVersionInfo(std::string_view path) override;
  [[nodiscard]] std::string VerLanguageName(std::uint16_t language) override;

 private:
  const WindowsDrive& drive_;
};

}  // namespace tallowin::platform::linux_host
