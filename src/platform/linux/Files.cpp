#include "platform/linux/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

namespace fs = std::filesystem;

namespace {

/// Gives the new file the old one's owner and permissions, as far as the user may.
bool TakeOverRights(int file, const std::string& oldFile) {
  struct stat old = {};
  if (stat(oldFile.c_str(), &old) != 0) return fchmod(file, S_IRUSR | S_IWUSR) == 0;
  struct stat own = {};
  if (fstat(file, &own) != 0) return false;
  const bool foreign = own.st_uid != old.st_uid || own.st_gid != old.st_gid;
  if (foreign && fchown(file, old.st_uid, old.st_gid) != 0) return false;
  return fchmod(file, old.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) == 0;
}

void SyncFolder(const std::string& folder) {
  const FileDescriptor handle(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (handle) (void)fsync(handle.Get());
}

}  // namespace

bool NameExists(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0;
}

bool WriteWhole(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return fsync(descriptor) == 0;
}

int ReplaceFile(const std::string& path, std::string_view text) {
  const fs::path target(path);
  const std::string folder = target.parent_path().string();
  std::string part = folder + "/." + target.filename().string() + ".XXXXXX";
  const FileDescriptor file(mkostemp(part.data(), O_CLOEXEC));
  if (!file) return errno;
  const bool done = TakeOverRights(file.Get(), path) && WriteWhole(file.Get(), text) &&
                    std::rename(part.c_str(), path.c_str()) == 0;
  if (!done) {
    const int error = errno;
    (void)unlink(part.c_str());
    return error == 0 ? EIO : error;
  }
  SyncFolder(folder);
  return 0;
}

void MakePrivateFolders(const std::string& folder) {
  std::error_code error;
  if (folder.empty() || fs::is_directory(folder, error)) return;
  const std::string above = fs::path(folder).parent_path().string();
  if (above != folder) MakePrivateFolders(above);
  (void)mkdir(folder.c_str(), S_IRWXU);
}

}  // namespace tallowin::platform::linux_host
