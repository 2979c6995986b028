// The desktop's opener, and the import of registry files in place of the registry editor.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>

#include "platform/Registry.h"
#include "platform/Shell.h"

namespace tallowin::platform::linux_host {

/// What is opened: addresses with the schemes http, https and ftp, folders, and files that exist.
/// Files that the desktop might run instead of showing them are refused with 5, and so is whatever
/// is neither a file nor a folder.
class LinuxShell : public Shell {
 public:
  struct Programs {
    std::string opener = "xdg-open";
    std::string mimeQuery = "xdg-mime";  ///< tells what opens a type of files
  };

  /// Programs are started with the file mode creation mask `userMask`.
  LinuxShell(Registry& registry, mode_t userMask) : LinuxShell(registry, userMask, Programs()) {}
  LinuxShell(Registry& registry, mode_t userMask, Programs programs)
      : registry_(registry), userMask_(userMask), programs_(std::move(programs)) {}

  /// A registry file with a fault gives 11 (bad format); what stood before the fault is imported.
  /// There is nothing to print with: the verb "Print" gives 31. In place of a help file (.chm) that
  /// is not there or that nothing opens, the pages in the folder of its name beside it are opened.
  std::int32_t Execute(std::string_view verb, std::string_view file,
                       std::int32_t showCommand) override;

  bool RunAndWait(std::string_view commandLine, std::chrono::milliseconds limit) override;

 private:
  [[nodiscard]] std::int32_t Import(const std::string& path);
  [[nodiscard]] std::int32_t Open(const std::string& argument) const;
  [[nodiscard]] bool OpensHelpFiles() const;
  /// `path`, or what is to be opened in its place.
  [[nodiscard]] std::string HelpPagesOr(const std::string& path) const;

  Registry& registry_;
  mode_t userMask_;
  Programs programs_;
};

}  // namespace tallowin::platform::linux_host
