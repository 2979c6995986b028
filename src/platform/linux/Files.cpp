#include "platform/linux/Files.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

namespace tallowin::platform::linux_host {

namespace fs = std::filesystem;

bool NameExists(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0;
}

void MakePrivateFolders(const std::string& folder) {
  std::error_code error;
  if (folder.empty() || fs::is_directory(folder, error)) return;
  const std::string above = fs::path(folder).parent_path().string();
  if (above != folder) MakePrivateFolders(above);
  (void)mkdir(folder.c_str(), S_IRWXU);
}

}  // namespace tallowin::platform::linux_host
