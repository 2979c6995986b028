#include "platform/linux/FolderWatch.h"

#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <iterator>

namespace tallowin::platform::linux_host {
namespace {

constexpr std::uint32_t kNames =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t kContents = kNames | IN_MODIFY | IN_CLOSE_WRITE;

/// What other machines do to a folder raises no event here.
bool LiesElsewhere(const std::string& folder) {
  struct statfs system = {};
  if (statfs(folder.c_str(), &system) != 0) return false;
  constexpr std::uint32_t kSmb2 = 0xFE534D42;
  constexpr std::uint32_t kCifs = 0xFF534D42;
  constexpr std::uint32_t kCeph = 0x00C36400;
  constexpr std::uint32_t kFuse = 0x65735546;
  constexpr std::array<std::uint32_t, 9> kRemote = {
      NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, kSmb2,           kCifs,           kCeph,
      kFuse,           V9FS_MAGIC,      AFS_SUPER_MAGIC, CODA_SUPER_MAGIC};
  return std::ranges::find(kRemote, static_cast<std::uint32_t>(system.f_type)) != kRemote.end();
}

}  // namespace

FolderWatch::FolderWatch() : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), mayLose_(!events_) {}

bool FolderWatch::HasChanged() {
  if (!events_) return false;
  alignas(inotify_event) std::array<char, 16384> buffer;
  // A lost event is an event too: the queue tells of its overflow. What is left behind a flood is
  // found at the next call.
  constexpr int kReadsAtATime = 64;
  bool changed = false;
  for (int reads = 0; reads < kReadsAtATime; ++reads) {
    if (read(events_.Get(), buffer.data(), buffer.size()) <= 0) break;
    changed = true;
  }
  return changed;
}

void FolderWatch::BeginLook() {
  before_ = std::move(watches_);
  watches_.clear();
  mayLose_ = !events_;
}

void FolderWatch::EndLook() {
  std::set<int> gone;
  std::ranges::set_difference(before_, watches_, std::inserter(gone, gone.end()));
  // The removal raises an event of its own, which leads to one more look.
  for (const int watch : gone) (void)inotify_rm_watch(events_.Get(), watch);
  before_.clear();
}

bool FolderWatch::Add(const std::string& folder, std::uint32_t events) {
  // One folder may be named as a place and as one above a place.
  const int watch =
      inotify_add_watch(events_.Get(), folder.c_str(), events | IN_MASK_ADD | IN_ONLYDIR);
  if (watch >= 0) {
    watches_.insert(watch);
    return true;
  }
  const bool absent = errno == ENOENT || errno == ENOTDIR || errno == EACCES || errno == ELOOP;
  if (!absent) mayLose_ = true;
  return false;
}

std::string FolderWatch::AddNearestAbove(const std::string& folder) {
  std::string path = folder;
  while (path.size() > 1) {
    path = std::filesystem::path(path).parent_path().string();
    if (Add(path, kNames)) break;
  }
  return path;
}

void FolderWatch::Name(const std::string& folder) {
  if (!events_ || folder.empty() || folder.front() != '/') return;
  std::string above = AddNearestAbove(folder);
  // A folder on the way may have been made since it was found missing.
  for (int tries = 0; !Add(folder, kContents) && tries < 3; ++tries) {
    const std::string now = AddNearestAbove(folder);
    if (now == above) break;
    above = now;
  }
  if (LiesElsewhere(folder)) mayLose_ = true;
}

}  // namespace tallowin::platform::linux_host
