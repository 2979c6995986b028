#include "platform/linux/LinuxHost.h"

#include <sys/stat.h>

#include <utility>

#include "platform/linux/FirstStart.h"
#include "platform/linux/RegistryFile.h"

namespace tallowin::platform::linux_host {

LinuxHost::Preparation::Preparation(const LinuxFolders& folders) {
  userMask = umask(S_IRWXG | S_IRWXO);
  folders.Prepare();
}

LinuxHost::LinuxHost(const LinuxFolders& folders, Warn warn)
    : preparation_(folders),
      warn_(std::move(warn)),
      helper_(PrivilegedHelper::FindProgram(folders.executables)),
      sockets_(loop_, &helper_),
      registry_(folders.RegistryPath(),
                [this](const std::string& setAside) {
                  warn_("the settings were damaged; the damaged file lies at " + setAside);
                }),
      autostart_(registry_, AutostartPlaces::FromEnvironment(folders)),
      drive_(folders),
      iniFiles_(drive_),
      paths_(folders, drive_),
      shell_(registry_, preparation_.userMask),
      instance_(folders.config + "/instance.lock"),
      files_(drive_),
      fileFacts_(drive_),
      versionInfo_(drive_),
      modules_(drive_),
      host_{.loop = loop_,
            .sockets = sockets_,
            .registry = autostart_,
            .iniFiles = iniFiles_,
            .paths = paths_,
            .shell = shell_,
            .regional = regional_,
            .instance = instance_,
            .system = system_,
            .sound = sound_,
            .shutdown = shutdown_,
            .dialUp = dialUp_,
            .smtp = smtp_,
            .icmp = icmp_,
            .names = names_,
            .files = files_,
            .processes = processes_,
            .fileFacts = fileFacts_,
            .versionInfo = versionInfo_,
            .modules = modules_,
            .ipStatistics = ipStatistics_,
            .clock = clock_,
            .http = http_} {
  std::unique_ptr<RegistryKey> root;
  const RegistryResult result = registry_.OpenKey(RegistryRoot::CurrentUser, {}, root);
  if (result != registry::kSuccess && result != registry::kNotFound) {
    warn_("the settings in " + folders.RegistryPath() +
          " cannot be read: " + DescribeRegistryResult(result));
    return;
  }
  const std::string trouble = ImportPresetsOnce(registry_, folders.program + "/defaults.reg");
  if (!trouble.empty()) warn_(trouble);
}

}  // namespace tallowin::platform::linux_host
