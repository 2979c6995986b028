#include "platform/linux/LinuxFileFacts.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>

#include "platform/linux/FileType.h"
#include "platform/linux/LinuxPaths.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr mode_t kAnyoneWrites = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr std::uint64_t kBlock = 512;

std::optional<struct statx> Status(const std::string& path, int flags = 0) {
  struct statx status = {};
  if (path.empty()) return std::nullopt;
  constexpr unsigned kWanted = STATX_BASIC_STATS | STATX_BTIME;
  if (statx(AT_FDCWD, path.c_str(), flags, kWanted, &status) != 0) return std::nullopt;
  return status;
}

/// Of what a link leads to or, where it leads nowhere, of the link.
std::optional<struct statx> StatusOfEntry(const std::string& path) {
  auto status = Status(path);
  return status ? status : Status(path, AT_SYMLINK_NOFOLLOW);
}

/// There are file systems that claim to keep the time and have none.
bool HasCreationTime(const struct statx& status) {
  return (status.stx_mask & STATX_BTIME) != 0 && status.stx_btime.tv_sec != 0;
}

/// File systems keep years that the type of a time does not hold: they become its first or last.
FileTime TimeOf(const statx_timestamp& stamp) {
  constexpr std::chrono::seconds kRoom(2);  // for those who cut it to whole seconds
  constexpr auto kFirst =
      std::chrono::ceil<std::chrono::seconds>(FileTime::duration::min()) + kRoom;
  constexpr auto kLast =
      std::chrono::floor<std::chrono::seconds>(FileTime::duration::max()) - kRoom;
  return FileTime(
      std::clamp(std::chrono::seconds(stamp.tv_sec), kFirst, kLast) +
      std::chrono::duration_cast<FileTime::duration>(std::chrono::nanoseconds(stamp.tv_nsec)));
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool IsSparse(const struct statx& status) {
  return S_ISREG(status.stx_mode) && status.stx_blocks * kBlock < status.stx_size;
}

bool IsLink(const std::string& path) {
  const auto status = Status(path, AT_SYMLINK_NOFOLLOW);
  return status && S_ISLNK(status->stx_mode);
}

std::uint32_t AttributesOf(const struct statx& status, const std::string& path) {
  using namespace attribute;
  const bool compressed = (status.stx_attributes & STATX_ATTR_COMPRESSED) != 0;
  const bool notToDump = (status.stx_attributes & STATX_ATTR_NODUMP) != 0;
  std::uint32_t attributes = 0;
  if ((status.stx_mode & kAnyoneWrites) == 0) attributes |= kReadOnly;
  if (NameOf(path).starts_with('.')) attributes |= kHidden;
  if (S_ISDIR(status.stx_mode)) attributes |= kFolder;
  if (S_ISREG(status.stx_mode) && !notToDump) attributes |= kArchive;
  if (IsLink(path)) attributes |= kLink;
  if (compressed) attributes |= kCompressed;
  if (!compressed && IsSparse(status)) attributes |= kSparse;
  return attributes == 0 ? kNormal : attributes;
}

}  // namespace

std::string LinuxFileFacts::RealName(std::string_view path) const {
  if (path.empty() || path.find('\0') != std::string_view::npos) return {};
  return drive_.Resolve(AbsolutePath(path));
}

std::optional<FoundFile> LinuxFileFacts::FindFirstFile(std::string_view path) {
  const std::string name = RealName(path);
  const auto status = StatusOfEntry(name);
  // The root is the entry of no directory.
  if (!status || name == "/") return std::nullopt;
  FoundFile found{.fileName = NameOf(name),
                  .alternateName = {},
                  .attributes = AttributesOf(*status, name),
                  .size = status->stx_size,
                  .creationTime = {},
                  .lastAccessTime = TimeOf(status->stx_atime),
                  .modifyTime = TimeOf(status->stx_mtime)};
  if (HasCreationTime(*status)) found.creationTime = TimeOf(status->stx_btime);
  return found;
}

std::uint64_t LinuxFileFacts::GetCompressedFileSize(std::string_view path) {
  const auto status = StatusOfEntry(RealName(path));
  if (!status) return 0;
  const bool compressed = (status->stx_attributes & STATX_ATTR_COMPRESSED) != 0;
  return compressed || IsSparse(*status) ? status->stx_blocks * kBlock : status->stx_size;
}

ShellFileInfo LinuxFileFacts::GetShellFileInfo(std::string_view path) {
  const std::string name = RealName(path);
  const auto status = StatusOfEntry(name);
  if (!status) return {};
  const FileType type = TypeOfFile(name, status->stx_mode);
  return {.displayName = NameOf(name), .typeName = type.name, .icon = type.icon};
}

bool LinuxFileFacts::SetFileAttributes(std::string_view path, std::uint32_t attributes) {
  const std::string name = RealName(path);
  const auto status = Status(name);
  if (!status) return false;
  const std::uint32_t present = AttributesOf(*status, name) & ~attribute::kNormal;
  const std::uint32_t wanted = attributes & ~attribute::kNormal;
  if (((present ^ wanted) & ~attribute::kReadOnly) != 0) return false;
  const bool readOnly = (wanted & attribute::kReadOnly) != 0;
  const mode_t mode = status->stx_mode & ALLPERMS;
  return chmod(name.c_str(), readOnly ? mode & ~kAnyoneWrites : mode | S_IWUSR) == 0;
}

bool LinuxFileFacts::SetFileTime(std::string_view path, FileTimeKind kind, FileTime time) {
  if (kind == FileTimeKind::Creation) return false;
  const auto second = std::chrono::floor<std::chrono::seconds>(time);
  const timespec stamp = {.tv_sec = second.time_since_epoch().count(),
                          .tv_nsec = std::chrono::nanoseconds(time - second).count()};
  const timespec leave = {.tv_sec = 0, .tv_nsec = UTIME_OMIT};
  const bool access = kind == FileTimeKind::LastAccess;
  const std::array<timespec, 2> times = {access ? stamp : leave, access ? leave : stamp};
  const std::string name = RealName(path);
  return !name.empty() && utimensat(AT_FDCWD, name.c_str(), times.data(), 0) == 0;
}

}  // namespace tallowin::platform::linux_host
