// Resources of executable files, by a reader of our own.
#pragma once

#include "platform/ResourceModules.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

class LinuxResourceModules : public ResourceModules {
 public:
  explicit LinuxResourceModules(const WindowsDrive& drive) : drive_(drive) {}
  [[nodiscard]] std::unique_ptr<ResourceModule> LoadLibraryAsDataFile(
      std::string_view path) override;

 private:
  const WindowsDrive& drive_;
};

}  // namespace tallowin::platform::linux_host
