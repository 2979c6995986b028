// The desktop's opener, and the import of registry files in place of the registry editor.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>

#include "platform/Registry.h"
#include "platform/Shell.h"

namespace tallowin::platform::linux_host {

/// What is opened: addresses with the schemes http, https and mailto, and files that exist. Files
/// that the desktop might run instead of showing them are refused with 5.
class LinuxShell : public Shell {
 public:
  /// Programs are started with the file mode creation mask `userMask`.
  LinuxShell(Registry& registry, mode_t userMask, std::string opener = "xdg-open")
      : registry_(registry), userMask_(userMask), opener_(std::move(opener)) {}

  /// A registry file with a fault gives 11 (bad format); what stood before the fault is imported.
  /// There is nothing to print with: the verb "Print" gives 31.
  std::int32_t Execute(std::string_view verb, std::string_view file,
                       std::int32_t showCommand) override;

  bool RunAndWait(std::string_view commandLine, std::chrono::milliseconds limit) override;

 private:
  [[nodiscard]] std::int32_t Import(const std::string& path);
  [[nodiscard]] std::int32_t Open(const std::string& argument) const;

  Registry& registry_;
  mode_t userMask_;
  std::string opener_;
};

}  // namespace tallowin::platform::linux_host
