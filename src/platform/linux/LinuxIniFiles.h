// INI files on the file system.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/IniFiles.h"
#include "platform/linux/IniAnswers.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

/// Of a file larger than 1 MiB only the first 1 MiB is read, and it is not written. A file that
/// has not changed is not read again.
class LinuxIniFiles : public IniFiles {
 public:
  explicit LinuxIniFiles(const WindowsDrive& drive,
                         IniAnswers::Clock clock = IniAnswers::SystemTime)
      : drive_(drive), answers_(std::move(clock)) {}

  [[nodiscard]] std::string GetPrivateProfileString(std::string_view fileName,
                                                    std::string_view section, std::string_view key,
                                                    std::size_t bufferSize) override;

  /// False also for a name or value that holds a line end or a NUL: it could not be read back. A
  /// file that denies writing is not replaced, though its folder might allow it.
  bool WritePrivateProfileString(std::string_view fileName, std::string_view section,
                                 std::string_view key, std::string_view value) override;

 private:
  /// Those below drive C: in them names are matched without regard to case.
  [[nodiscard]] std::vector<std::string> FoldersOf(const std::string& path) const;

  const WindowsDrive& drive_;
  IniAnswers answers_;
};

}  // namespace tallowin::platform::linux_host
