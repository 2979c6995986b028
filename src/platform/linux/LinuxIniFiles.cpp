#include "platform/linux/LinuxIniFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/IniText.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr mode_t kNewFileMode = S_IRUSR | S_IWUSR;

/// Up to `kLargestFile` + 1 bytes, so that a caller can tell that there are more.
std::optional<std::string> ReadAll(int file) {
  constexpr std::size_t kChunk = std::size_t{1} << 16U;
  std::string text;
  for (std::size_t length = 0;;) {
    const std::size_t wanted = std::min(kChunk, kLargestFile + 1 - length);
    text.resize(length + wanted);
    const ssize_t got = read(file, text.data() + length, wanted);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    length += static_cast<std::size_t>(got);
    text.resize(length);
    if (got == 0 || length > kLargestFile) return text;
  }
}

/// Nothing if it cannot be read or is no regular file: a pipe in its place must not stop us.
std::optional<std::string> ReadFile(const std::string& path) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status = {};
  if (!file || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return ReadAll(file.Get());
}

bool WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return fsync(file) == 0;
}

/// Gives the new file the old one's owner and permissions, as far as the user may.
bool TakeOverRights(int file, const std::string& oldFile) {
  struct stat old = {};
  if (stat(oldFile.c_str(), &old) != 0) return fchmod(file, kNewFileMode) == 0;
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

/// In one step: whoever opens `path` finds the old text or the new one, also after a crash.
bool ReplaceFile(const std::string& path, std::string_view text) {
  const std::filesystem::path target(path);
  const std::string folder = target.parent_path().string();
  std::string temporary = folder + "/." + target.filename().string() + ".XXXXXX";
  const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file) return false;
  const bool done = TakeOverRights(file.Get(), path) && WriteAll(file.Get(), text) &&
                    rename(temporary.c_str(), path.c_str()) == 0;
  if (!done) {
    (void)unlink(temporary.c_str());
    return false;
  }
  SyncFolder(folder);
  return true;
}

/// The file behind symbolic links; nothing for a link that leads nowhere.
std::optional<std::string> RealFile(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         &std::free);
  if (real != nullptr) return std::string(real.get());
  struct stat status = {};
  if (errno != ENOENT || lstat(path.c_str(), &status) == 0) return std::nullopt;
  return path;
}

bool FitsInLine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

}  // namespace

std::string LinuxIniFiles::GetPrivateProfileString(std::string_view fileName,
                                                   std::string_view section, std::string_view key,
                                                   std::size_t bufferSize) {
  const std::optional<std::string> text = ReadFile(drive_.Resolve(fileName));
  if (!text || bufferSize == 0) return {};
  const std::string_view readable = std::string_view(*text).substr(0, kLargestFile);
  return std::string(IniValue(readable, section, key).substr(0, bufferSize - 1));
}

bool LinuxIniFiles::WritePrivateProfileString(std::string_view fileName, std::string_view section,
                                              std::string_view key, std::string_view value) {
  if (key.empty() || !FitsInLine(section) || !FitsInLine(key) || !FitsInLine(value)) return false;
  const std::optional<std::string> path = RealFile(drive_.Resolve(fileName));
  if (!path) return false;
  std::string text;
  if (access(path->c_str(), F_OK) == 0) {
    const std::optional<std::string> old = ReadFile(*path);
    if (!old || old->size() > kLargestFile || access(path->c_str(), W_OK) != 0) return false;
    text = *old;
  }
  return ReplaceFile(*path, WithIniValue(text, section, key, value));
}

}  // namespace tallowin::platform::linux_host
