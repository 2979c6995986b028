#include "platform/linux/LinuxFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/linux/Files.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

/// Relative values are to be taken as not set.
std::string AbsoluteVariable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value != '/') return {};
  std::string path = value;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string HomeFolder() {
  std::string home = AbsoluteVariable("HOME");
  if (!home.empty()) return home;
  const passwd* entry = getpwuid(getuid());
  return entry != nullptr && entry->pw_dir != nullptr && *entry->pw_dir == '/' ? entry->pw_dir
                                                                               : "/";
}

std::string XdgFolder(const char* variable, const std::string& home, std::string_view fallback) {
  std::string base = AbsoluteVariable(variable);
  if (base.empty()) base = home + "/" + std::string(fallback);
  return base + "/tallowin";
}

std::string ExecutableFolder() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path().string();
}

/// What the suite looks for in its folder.
constexpr std::array kData = {"defaults.reg", "hacker.wav", "trojan.wav", "tallowinhlp.chm",
                              "tallowinhlp"};

/// Links and no copies: who upgrades the package gets its new manual and presets.
void LinkMissing(const fs::path& from, const fs::path& to) {
  for (const char* name : kData) {
    const fs::path link = to / name;
    std::error_code error;
    // Left behind by a package that lay elsewhere.
    if (fs::is_symlink(link, error) && !fs::exists(link, error)) fs::remove(link, error);
    // Fails where there is something, which is as it should be.
    if (fs::exists(from / name, error)) fs::create_symlink(from / name, link, error);
  }
}

}  // namespace

LinuxFolders LinuxFolders::FromEnvironment() {
  LinuxFolders folders;
  folders.home = HomeFolder();
  folders.config = XdgFolder("XDG_CONFIG_HOME", folders.home, ".config");
  folders.data = XdgFolder("XDG_DATA_HOME", folders.home, ".local/share");
  folders.winePrefix = AbsoluteVariable("WINEPREFIX");
  folders.executables = ExecutableFolder();
  // An installed program stands beside its data and does not keep its files there, not even where
  // its folder can be written: root would fill /usr/bin with logs.
  const fs::path shared = fs::path(folders.executables).parent_path() / "share" / "tallowin";
  std::error_code error;
  const bool installed = fs::is_directory(shared, error);
  folders.installedData = installed ? shared.string() : folders.executables;
  const bool besideItself = !installed && access(folders.executables.c_str(), W_OK) == 0;
  folders.program = besideItself ? folders.executables : folders.data;
  return folders;
}

void LinuxFolders::Prepare() const {
  MakePrivateFolders(config);
  MakePrivateFolders(data);
  if (program == data) LinkMissing(installedData, data);
}

}  // namespace tallowin::platform::linux_host
