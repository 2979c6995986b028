// The folder that stands for drive C, in which names are matched without regard to case.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/LinuxFolders.h"

namespace tallowin::platform::linux_host {

/// The drive C of the user's Wine prefix if there is one: programs for Windows run and write there.
/// Otherwise a folder of our own, which is made, with the Windows folder in it, when it is first
/// asked for.
class WindowsDrive {
 public:
  explicit WindowsDrive(const LinuxFolders& folders);

  [[nodiscard]] std::string Root() const;
  [[nodiscard]] std::string WindowsFolder() const;
  [[nodiscard]] std::string SystemFolder() const;

  /// The name that `path` really has, where it lies on the drive: each component is matched exactly
  /// or, failing that, without regard to case; components that do not exist stay as they are. The
  /// path may also spell the way to the drive in another case, since the system keeps paths in
  /// upper case as a whole, and so may the path of a folder on that way. Any other path off the
  /// drive comes back as it is.
  [[nodiscard]] std::string Resolve(std::string_view path) const;

  /// True if `path`, spelt as it may be, lies on the drive.
  [[nodiscard]] bool Holds(std::string_view path) const;

 private:
  std::string root_;
  bool ours_;
};

}  // namespace tallowin::platform::linux_host
