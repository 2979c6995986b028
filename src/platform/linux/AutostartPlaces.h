// From which files and folders this system starts programs for this user.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/LinuxFolders.h"
#include "platform/linux/OwnAutostart.h"
#include "platform/linux/UnitFile.h"

namespace tallowin::platform::linux_host {

/// A folder of systemd units; the first in a list goes before those behind it.
struct UnitFolder {
  std::string path = {};
  /// Filled by packages: links between its units say nothing about what the owner has enabled.
  bool packaged = false;
};

/// All paths are absolute. An empty path is a place that does not exist.
struct AutostartPlaces {
  std::string userAutostart = {};                 ///< XDG autostart entries
  std::vector<std::string> systemAutostart = {};  ///< the most important first
  std::vector<std::string> desktops = {};         ///< names of the running desktop
  std::vector<std::string> programFolders = {};   ///< where a program without a path is looked for

  std::vector<UnitFolder> userUnits = {};
  std::vector<UnitFolder> systemUnits = {};
  UnitMeanings userMeanings = {};
  UnitMeanings systemMeanings = {};

  std::string userName = {};  ///< whose table of cron it is
  std::string systemCrontab = {};
  std::string cronFolder = {};
  std::string userTables = {};                   ///< where cron keeps the users' tables
  std::vector<std::string> crontabProgram = {};  ///< with its first arguments

  OwnAutostart own = {};
  std::string copies = {};  ///< what was undone is kept below it

  [[nodiscard]] static AutostartPlaces FromEnvironment(const LinuxFolders& folders);
};

}  // namespace tallowin::platform::linux_host
