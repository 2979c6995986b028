// Where this user's files lie on this machine.
#pragma once

#include <string>

namespace tallowin::platform::linux_host {

/// Absolute paths without a separator at their end.
struct LinuxFolders {
  std::string config = {};   ///< $XDG_CONFIG_HOME/tallowin
  std::string data = {};     ///< $XDG_DATA_HOME/tallowin
  std::string program = {};  ///< what the system calls the program's folder; `data` if installed
  std::string installedData = {};  ///< where defaults.reg and the like come from
  std::string executables = {};    ///< where the running program lies
  std::string home = {};
  std::string winePrefix = {};  ///< $WINEPREFIX; empty for ".wine" in `home`

  /// Nothing is created yet.
  [[nodiscard]] static LinuxFolders FromEnvironment();

  /// Makes the folders, for this user alone, and puts links to what the suite has in
  /// `installedData` into `data` where that is the program's folder. What is there already is the
  /// user's own and stays, but for a link that leads nowhere. What cannot be made is left out: the
  /// facility that needs it tells of it.
  void Prepare() const;

  [[nodiscard]] std::string RegistryPath() const { return config + "/registry.sqlite"; }
};

}  // namespace tallowin::platform::linux_host
