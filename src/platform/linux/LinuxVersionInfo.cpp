#include "platform/linux/LinuxVersionInfo.h"

#include "platform/linux/ExecutableFile.h"
#include "platform/linux/Languages.h"
#include "platform/linux/VersionTree.h"

namespace tallowin::platform::linux_host {

std::unique_ptr<VersionBlock> LinuxVersionInfo::GetFileVersionInfo(std::string_view path) {
  const auto resources = OpenExecutable(drive_, path);
  return resources ? VersionTree::Read(*resources) : nullptr;
}

std::string LinuxVersionInfo::VerLanguageName(std::uint16_t language) {
  return LanguageName(language);
}

}  // namespace tallowin::platform::linux_host
