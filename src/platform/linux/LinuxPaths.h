// The program's folders and the names of files, on the file system.
#pragma once

#include "platform/Paths.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

class LinuxPaths : public Paths {
 public:
  LinuxPaths(LinuxFolders folders, const WindowsDrive& drive)
      : folders_(std::move(folders)), drive_(drive) {}

  [[nodiscard]] char Separator() const override { return '/'; }
  [[nodiscard]] std::string ProgramFolder() const override { return folders_.program; }
  [[nodiscard]] std::string WindowsFolder() const override { return drive_.WindowsFolder(); }
  [[nodiscard]] std::string SystemFolder() const override { return drive_.SystemFolder(); }
  [[nodiscard]] std::string DriveC() const override { return drive_.Root(); }

  [[nodiscard]] bool Find(std::string_view path) const override;
  std::string MakeTempFile(std::string_view folder, std::string_view prefix) override;
  [[nodiscard]] std::string SearchPath(std::string_view fileName) const override;
  [[nodiscard]] std::string FullPath(std::string_view path) const override;
  [[nodiscard]] std::string ShortPath(std::string_view path) const override;

 private:
  [[nodiscard]] std::string ResolvedFullPath(std::string_view path) const;

  LinuxFolders folders_;
  const WindowsDrive& drive_;
};

/// `path` made absolute against the current folder, with ".", ".." and doubled separators resolved
/// in the text and no separator at its end. Empty for an empty path.
[[nodiscard]] std::string AbsolutePath(std::string_view path);

}  // namespace tallowin::platform::linux_host
