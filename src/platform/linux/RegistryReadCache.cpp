#include "platform/linux/RegistryReadCache.h"

#include <sys/stat.h>

#include <utility>

namespace tallowin::platform::linux_host {
namespace {

using std::chrono::steady_clock;

// Looking at the files costs two system calls; the readings of one attempt lie this close together.
constexpr std::chrono::microseconds kLookInterval{100};
// The clock of file times may step by a hundredth of a second: what changes twice within a step has
// the same time both times.
constexpr std::chrono::milliseconds kStepOfFileTimes{20};
// Far more than one attempt reads; a list that is walked through is not worth keeping.
constexpr std::size_t kMostReadings = 256;
constexpr std::size_t kLargest = 4096;

std::chrono::nanoseconds SinceEpoch(const std::timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

bool IsSettled(const std::timespec& changed) {
  std::timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return SinceEpoch(now) - SinceEpoch(changed) > kStepOfFileTimes;
}

}  // namespace

bool RegistryReadCache::FileState::operator==(const FileState& other) const {
  return inode == other.inode && size == other.size && changed.tv_sec == other.changed.tv_sec &&
         changed.tv_nsec == other.changed.tv_nsec;
}

RegistryReadCache::FileState RegistryReadCache::StateOf(const std::string& path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) return {};
  return {found.st_ino, found.st_size, found.st_ctim};
}

void RegistryReadCache::Follow(const std::string& path) {
  store_ = path;
  log_ = path + "-wal";
  lookedAt_ = {};
  Forget();
}

void RegistryReadCache::Look() {
  const auto now = steady_clock::now();
  if (now - begun_ > kLongestTrust) Forget();
  if (readings_.empty()) begun_ = now;
  if (now - lookedAt_ < kLookInterval) return;
  lookedAt_ = now;

  const FileState store = StateOf(store_);
  const FileState log = StateOf(log_);
  if (store != storeState_ || log != logState_) Forget();
  storeState_ = store;
  logState_ = log;
  settled_ = IsSettled(store.changed) && IsSettled(log.changed);
}

const RegistryReadCache::Reading* RegistryReadCache::Find(const std::string& name) {
  Look();
  const auto found = readings_.find(name);
  return found == readings_.end() ? nullptr : &found->second;
}

void RegistryReadCache::Remember(std::string name, Reading reading) {
  const bool worthIt = readings_.size() < kMostReadings && reading.value.data.size() <= kLargest;
  if (settled_ && worthIt) {
    readings_.insert_or_assign(std::move(name), std::move(reading));
  }
}

}  // namespace tallowin::platform::linux_host
