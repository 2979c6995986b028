// Where this user's files lie on this machine.
#pragma once

#include <string>

namespace tallowin::platform::linux_host {

/// Absolute paths without a separator at their end.
struct LinuxFolders {
  std::string config = {};   ///< $XDG_CONFIG_HOME/tallowin
  std::string data = {};     ///< $XDG_DATA_HOME/tallowin
  std::string program = {};  ///< what the system calls the program's folder; `data` if installed
  std::string installedData = {};  ///< where a package puts defaults.reg and the like
  std::string home = {};
  std::string winePrefix = {};  ///< $WINEPREFIX; empty for ".wine" in `home`

  /// Nothing is created yet.
  [[nodiscard]] static LinuxFolders FromEnvironment();

  /// Makes the folders, for this user alone, and fills `data` from `installedData` where it is the
  /// program's folder. A file that is there already is never written over. What cannot be made is
  /// left out: the facility that needs it tells of it.
  void Prepare() const;

  [[nodiscard]] std::string RegistryPath() const { return config + "/registry.sqlite"; }
};

}  // namespace tallowin::platform::linux_host
