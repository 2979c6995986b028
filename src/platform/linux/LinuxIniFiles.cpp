#include "platform/linux/LinuxIniFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ForeignFiles.h"
#include "platform/linux/IniText.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr mode_t kNewFileMode = S_IRUSR | S_IWUSR;

/// Nothing if it cannot be read whole or is no regular file.
std::optional<std::string> ReadWhole(const std::string& path) {
  BoundedText text;
  if (ReadBounded(path, kLargestFile, text) != Reading::Done || !text.whole) return std::nullopt;
  return std::move(text.text);
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
  if (bufferSize == 0) return {};
  const IniAnswers::Question question(fileName, section, key, bufferSize);
  if (const std::string* known = answers_.Find(question)) return *known;

  const std::string path = drive_.Resolve(fileName);
  answers_.Observe({path, FoldersOf(path)});
  // Only from here on would a change of the folders be seen.
  const bool seen = drive_.Resolve(fileName) == path;
  BoundedText text;
  const Reading result = ReadBounded(path, kLargestFile, text);
  if (result == Reading::ShortOfAll) {
    // For want of descriptors, say. It does not mean that the value has gone.
    const std::string* old = answers_.FindOld(question);
    return old == nullptr ? std::string() : *old;
  }
  std::string value(IniValue(text.text, section, key).substr(0, bufferSize - 1));
  if (seen) answers_.Keep(question, value);
  return value;
}

std::vector<std::string> LinuxIniFiles::FoldersOf(const std::string& path) const {
  std::vector<std::string> folders;
  std::string folder = std::filesystem::path(path).parent_path().string();
  for (; drive_.Holds(folder); folder = std::filesystem::path(folder).parent_path().string()) {
    folders.push_back(folder);
  }
  return folders;
}

bool LinuxIniFiles::WritePrivateProfileString(std::string_view fileName, std::string_view section,
                                              std::string_view key, std::string_view value) {
  if (key.empty() || !FitsInLine(section) || !FitsInLine(key) || !FitsInLine(value)) return false;
  const std::optional<std::string> path = RealFile(drive_.Resolve(fileName));
  if (!path) return false;
  answers_.Clear();
  std::string text;
  if (access(path->c_str(), F_OK) == 0) {
    const std::optional<std::string> old = ReadWhole(*path);
    if (!old || access(path->c_str(), W_OK) != 0) return false;
    text = *old;
  }
  return ReplaceFile(*path, WithIniValue(text, section, key, value));
}

}  // namespace tallowin::platform::linux_host
