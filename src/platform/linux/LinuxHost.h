// This host, whole: everything that platform::Host refers to.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "platform/Host.h"
#include "platform/OperatingSystem.h"
#include "platform/linux/AutostartRegistry.h"
#include "platform/linux/CurlLibrary.h"
#include "platform/linux/LinuxDialUp.h"
#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/LinuxFileFacts.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/LinuxHttp.h"
#include "platform/linux/LinuxIcmp.h"
#include "platform/linux/LinuxIniFiles.h"
#include "platform/linux/LinuxIpStatistics.h"
#include "platform/linux/LinuxNames.h"
#include "platform/linux/LinuxPaths.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxRegionalSettings.h"
#include "platform/linux/LinuxResourceModules.h"
#include "platform/linux/LinuxShell.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "platform/linux/LinuxSmtp.h"
#include "platform/linux/LinuxSound.h"
#include "platform/linux/LinuxSystemClock.h"
#include "platform/linux/LinuxSystemShutdown.h"
#include "platform/linux/LinuxVersionInfo.h"
#include "platform/linux/LinuxWinsock.h"
#include "platform/linux/PrivilegedHelper.h"
#include "platform/linux/SqliteRegistry.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

/// A process snapshot of this host carries the full path of each program.
class LinuxOperatingSystem : public OperatingSystem {
 public:
  [[nodiscard]] OsVersion GetVersion() const override {
    return {.platformId = 1, .majorVersion = 4, .minorVersion = 10};
  }
};

/// Built by the main routines, which must have made the application object of Qt before. From its
/// construction on, what the process creates is for this user alone; the folders are there, and so
/// are the presets for a user who has no settings yet.
class LinuxHost {
 public:
  /// Told in plain words where a damaged settings file was set aside, and that the settings cannot
  /// be reached or the presets not imported: the system itself keeps silent about all of it.
  /// Foreign bytes may stand in it.
  using Warn = std::function<void(const std::string& message)>;

  LinuxHost(const LinuxFolders& folders, Warn warn);

  [[nodiscard]] platform::Host& Host() { return host_; }
  /// The loop of `Host`, for what only this host's own classes need of it.
  [[nodiscard]] LinuxEventLoop& Loop() { return loop_; }

 private:
  /// First of all members, so that it runs before anything is created.
  struct Preparation {
    explicit Preparation(const LinuxFolders& folders);
    mode_t userMask = 0;  ///< as it was before, for programs that the user opens
  };

  Preparation preparation_;
  Warn warn_;
  LinuxEventLoop loop_;
  PrivilegedHelper helper_;
  LinuxSocketFactory sockets_;
  SqliteRegistry registry_;
  AutostartRegistry autostart_;  ///< the registry as the system sees it
  WindowsDrive drive_;
  LinuxIniFiles iniFiles_;
  LinuxPaths paths_;
  LinuxShell shell_;
  LinuxRegionalSettings regional_;
  LinuxSingleInstance instance_;
  LinuxOperatingSystem system_;
  LinuxSound sound_;
  LinuxSystemShutdown shutdown_;
  LinuxDialUp dialUp_;
  CurlLibrary curl_;
  LinuxSmtp smtp_{curl_};
  LinuxIcmp icmp_{&helper_};
  LinuxNames names_;
  LinuxFiles files_;
  LinuxProcesses processes_;
  LinuxFileFacts fileFacts_;
  LinuxVersionInfo versionInfo_;
  LinuxResourceModules modules_;
  LinuxIpStatistics ipStatistics_;
  LinuxSystemClock clock_{&helper_};
  LinuxHttp http_{curl_, loop_};
  platform::Host host_;
};

}  // namespace tallowin::platform::linux_host
