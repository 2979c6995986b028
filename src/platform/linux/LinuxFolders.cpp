#include "platform/linux/LinuxFolders.h"

#include <pwd.h>
#include <unistd.h>

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

/// An installed program stands beside its data and does not keep its files there, not even where
/// its folder can be written: root would fill /usr/bin with logs.
bool KeepsFilesBesideItself(const std::string& folder, const std::string& installedData) {
  std::error_code error;
  return !folder.empty() && !fs::is_directory(installedData, error) &&
         access(folder.c_str(), W_OK) == 0;
}

/// The copy appears under its name when it is whole: half a file would stay for ever, as files that
/// are there are never written over.
void CopyIfMissing(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(to, error))) return;
  const fs::path part = to.string() + ".part";
  if (!fs::copy_file(from, part, fs::copy_options::overwrite_existing, error)) return;
  // The package's file may be read-only; the user's copy belongs to the user alone.
  fs::permissions(part, fs::perms::owner_read | fs::perms::owner_write, error);
  fs::rename(part, to, error);
}

void CopyMissing(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (fs::equivalent(from, to, error)) return;
  for (fs::recursive_directory_iterator entry(from, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path target = to / entry->path().lexically_relative(from);
    std::error_code failure;
    if (entry->is_directory(failure)) {
      MakePrivateFolders(target);
    } else {
      CopyIfMissing(entry->path(), target);
    }
  }
}

}  // namespace

LinuxFolders LinuxFolders::FromEnvironment() {
  LinuxFolders folders;
  folders.home = HomeFolder();
  folders.config = XdgFolder("XDG_CONFIG_HOME", folders.home, ".config");
  folders.data = XdgFolder("XDG_DATA_HOME", folders.home, ".local/share");
  folders.winePrefix = AbsoluteVariable("WINEPREFIX");
  const std::string executables = ExecutableFolder();
  folders.installedData = (fs::path(executables).parent_path() / "share" / "tallowin").string();
  folders.program =
      KeepsFilesBesideItself(executables, folders.installedData) ? executables : folders.data;
  return folders;
}

void LinuxFolders::Prepare() const {
  MakePrivateFolders(config);
  MakePrivateFolders(data);
  if (program == data) CopyMissing(installedData, data);
}

}  // namespace tallowin::platform::linux_host
