#include "platform/linux/ForeignFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {
namespace {

Reading FailureOf(int error) {
  switch (error) {
    case EMFILE:
    case ENFILE:
    case ENOMEM:
    case EINTR:
    case EAGAIN:
    case EBUSY:
    case EIO:
    case ESTALE:
      return Reading::ShortOfAll;
    case EACCES:
    case EPERM:
      return Reading::Forbidden;
    default:
      return Reading::Absent;
  }
}

/// Only compared, so that those of far off years may wrap.
std::int64_t Nanoseconds(const timespec& time) {
  constexpr std::uint64_t kSecond = 1'000'000'000;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.tv_sec) * kSecond +
                                   static_cast<std::uint64_t>(time.tv_nsec));
}

FileStamp StampOf(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .modified = Nanoseconds(status.st_mtim),
          .changed = Nanoseconds(status.st_ctim)};
}

bool ReadAll(int descriptor, std::size_t bound, BoundedText& text) {
  std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    text.text.append(buffer.data(), static_cast<std::size_t>(count));
    if (text.text.size() <= bound) continue;
    text.text.resize(bound);
    text.whole = false;
    return true;
  }
}

NameInFolder Describe(const std::string& folder, const dirent& entry) {
  unsigned char type = entry.d_type;
  if (type == DT_UNKNOWN) {
    struct stat status = {};
    const std::string path = folder + "/" + std::string(entry.d_name);
    if (lstat(path.c_str(), &status) == 0)
      type = static_cast<unsigned char>(IFTODT(status.st_mode));
  }
  return {.name = entry.d_name, .isLink = type == DT_LNK, .isFolder = type == DT_DIR};
}

}  // namespace

Reading StampOfFile(const std::string& path, FileStamp& stamp) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return FailureOf(errno);
  if (!S_ISREG(status.st_mode)) return Reading::Absent;
  stamp = StampOf(status);
  return Reading::Done;
}

FileStamp StampOfName(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 ? StampOf(status) : FileStamp{.size = 0};
}

Reading ReadBounded(const std::string& path, std::size_t bound, BoundedText& text) {
  text = {};
  // Asked before the opening, since to open a device may do something already.
  FileStamp stamp;
  const Reading kind = StampOfFile(path, stamp);
  if (kind != Reading::Done) return kind;
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return FailureOf(errno);
  struct stat status = {};
  if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return Reading::Absent;
  return ReadAll(file.Get(), bound, text) ? Reading::Done : FailureOf(errno);
}

Reading ReadFolder(const std::string& path, std::vector<NameInFolder>& names) {
  names.clear();
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
  if (!folder) return FailureOf(errno);
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(folder.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.push_back(Describe(path, *entry));
  }
  if (errno != 0) return FailureOf(errno);
  std::ranges::sort(names, {}, &NameInFolder::name);
  return Reading::Done;
}

std::string LinkTarget(const std::string& path) {
  std::array<char, PATH_MAX> target;
  const ssize_t size = readlink(path.c_str(), target.data(), target.size());
  return size > 0 ? std::string(target.data(), static_cast<std::size_t>(size)) : std::string();
}

}  // namespace tallowin::platform::linux_host
