#include "platform/linux/UndoneCopies.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Files.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

/// On another file system a copy is made; something this large is no starter and no link.
constexpr std::uintmax_t kLargestCopy = std::uintmax_t{64} << 20U;

std::string FolderOf(const std::string& path) { return fs::path(path).parent_path().string(); }

RegistryResult CopyAndRemove(const std::string& from, const std::string& to) {
  std::error_code error;
  const fs::file_status kind = fs::symlink_status(from, error);
  if (error) return TranslateFileError(error.value());
  if (fs::is_symlink(kind)) {
    fs::copy_symlink(from, to, error);
  } else if (!fs::is_regular_file(kind) || fs::file_size(from, error) > kLargestCopy) {
    return registry::kWriteFault;
  } else {
    fs::copy_file(from, to, error);
  }
  if (error) return TranslateFileError(error.value());
  if (unlink(from.c_str()) == 0) return registry::kSuccess;
  const RegistryResult result = TranslateFileError(errno);
  (void)unlink(to.c_str());
  return result;
}

RegistryResult Move(const std::string& from, const std::string& to) {
  MakePrivateFolders(FolderOf(to));
  if (std::rename(from.c_str(), to.c_str()) == 0) return registry::kSuccess;
  return errno == EXDEV ? CopyAndRemove(from, to) : TranslateFileError(errno);
}

/// Before anything is moved: half an undoing would leave the entry in force with fewer links.
RegistryResult MayBeMoved(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (!NameExists(path)) return registry::kNotFound;
    if (faccessat(AT_FDCWD, FolderOf(path).c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
      return TranslateFileError(errno);
    }
  }
  return registry::kSuccess;
}

}  // namespace

RegistryResult TranslateFileError(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return registry::kAccessDenied;
    case ENOENT:
    case ENOTDIR:
      return registry::kNotFound;
    default:
      return registry::kWriteFault;
  }
}

std::string UndoneCopies::NewFolder() const {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  std::array<char, 32> stamp = {};
  (void)localtime_r(&now, &local);
  (void)std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d %H.%M.%S", &local);
  MakePrivateFolders(folder_);
  const std::string name = folder_ + "/" + stamp.data();
  for (int number = 1; number < 1000; ++number) {
    std::string path = number == 1 ? name : name + " (" + std::to_string(number) + ")";
    if (mkdir(path.c_str(), S_IRWXU) == 0) return path;
    if (errno != EEXIST) break;
  }
  return {};
}

RegistryResult UndoneCopies::MoveAway(const std::vector<std::string>& paths) const {
  RegistryResult result = MayBeMoved(paths);
  if (result != registry::kSuccess) return result;
  const std::string folder = NewFolder();
  if (folder.empty()) return registry::kWriteFault;
  std::size_t moved = 0;
  while (moved < paths.size() && result == registry::kSuccess) {
    result = Move(paths[moved], folder + paths[moved]);
    if (result == registry::kSuccess) ++moved;
  }
  if (result == registry::kSuccess) return result;
  while (moved-- > 0) (void)Move(folder + paths[moved], paths[moved]);
  std::error_code error;
  fs::remove_all(folder, error);
  return result;
}

RegistryResult UndoneCopies::Keep(std::string_view path, std::string_view text) const {
  const std::string folder = NewFolder();
  if (folder.empty()) return registry::kWriteFault;
  const std::string copy = folder + std::string(path);
  MakePrivateFolders(FolderOf(copy));
  const FileDescriptor file(
      open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  return file && WriteWhole(file.Get(), text) ? registry::kSuccess : registry::kWriteFault;
}

}  // namespace tallowin::platform::linux_host
