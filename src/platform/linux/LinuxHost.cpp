#include "platform/linux/LinuxHost.h"

#include <sys/stat.h>

namespace tallowin::platform::linux_host {

LinuxHost::Preparation::Preparation(const LinuxFolders& folders) {
  (void)umask(S_IRWXG | S_IRWXO);
  folders.Prepare();
}

LinuxHost::LinuxHost(const LinuxFolders& folders)
    : preparation_(folders),
      sockets_(loop_),
      registry_(folders.RegistryPath(),
                [this](const std::string& setAside) { damagedRegistry_ = setAside; }),
      drive_(folders),
      iniFiles_(drive_),
      paths_(folders, drive_),
      shell_(registry_),
      instance_(folders.config + "/instance.lock"),
      host_{.loop = loop_,
            .sockets = sockets_,
            .registry = registry_,
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
            .names = names_} {}

}  // namespace tallowin::platform::linux_host
