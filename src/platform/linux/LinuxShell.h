// The desktop's opener, and the import of registry files in place of the registry editor.
#pragma once

#include <string>

#include "platform/Registry.h"
#include "platform/Shell.h"

namespace tallowin::platform::linux_host {

/// What is opened: addresses with the schemes http, https and mailto, and files that exist. Files
/// that the desktop might run instead of showing them are refused with 5.
class LinuxShell : public Shell {
 public:
  explicit LinuxShell(Registry& registry, std::string opener = "xdg-open")
      : registry_(registry), opener_(std::move(opener)) {}

  /// A registry file with a fault gives 11 (bad format); what stood before the fault is imported.
  /// There is nothing to print with: the verb "Print" gives 31.
  std::int32_t Execute(std::string_view verb, std::string_view file,
                       std::int32_t showCommand) override;

 private:
  [[nodiscard]] std::int32_t Import(const std::string& path);
  [[nodiscard]] std::int32_t Open(const std::string& argument) const;

  Registry& registry_;
  std::string opener_;
};

}  // namespace tallowin::platform::linux_host
