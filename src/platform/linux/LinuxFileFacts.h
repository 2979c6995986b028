// File facts from the file system, type names from the shared MIME database.
#pragma once

#include "platform/FileFacts.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

class LinuxFileFacts : public FileFacts {
 public:
  explicit LinuxFileFacts(const WindowsDrive& drive) : drive_(drive) {}

  /// Attributes as programs for Windows see them on this system: read-only is what nobody may
  /// write, hidden is a name with a dot in front; every ordinary file is to be archived that is not
  /// marked as none to dump.
  [[nodiscard]] std::optional<FoundFile> FindFirstFile(std::string_view path) override;
  [[nodiscard]] std::uint64_t GetCompressedFileSize(std::string_view path) override;
  [[nodiscard]] ShellFileInfo GetShellFileInfo(std::string_view path) override;
  /// Of all attributes only read-only can be set here, and it is the owner's right to write that
  /// comes back with it.
  bool SetFileAttributes(std::string_view path, std::uint32_t attributes) override;
  /// The time of creation cannot be set.
  bool SetFileTime(std::string_view path, FileTimeKind kind, FileTime time) override;

 private:
  [[nodiscard]] std::string RealName(std::string_view path) const;

  const WindowsDrive& drive_;
};

}  // namespace tallowin::platform::linux_host
