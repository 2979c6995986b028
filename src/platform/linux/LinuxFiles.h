// Reading and deleting whole files.
#pragma once

#include "platform/Files.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

class LinuxFiles : public Files {
 public:
  explicit LinuxFiles(const WindowsDrive& drive) : drive_(drive) {}

  [[nodiscard]] FileContents Read(std::string_view path) override;
  void Delete(std::string_view path) override;

 private:
  [[nodiscard]] std::string RealName(std::string_view path) const;

  const WindowsDrive& drive_;
};

}  // namespace tallowin::platform::linux_host
