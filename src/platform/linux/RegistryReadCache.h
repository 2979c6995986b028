// What the registry's store gave lately, for as long as the store has not changed.
#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/Registry.h"

namespace tallowin::platform::linux_host {

/// A connection attempt reads the same dozen values as the one before it, and each reading of the
/// store takes locks on its file. Whether the file has changed shows in the times and sizes of the
/// store and of its write-ahead log, to which every commit of any process writes.
///
/// Other processes may go unnoticed for a tenth of a millisecond; and until `kLongestTrust` is over
/// should one of them stand still in the middle of a commit, or should the times of the file system
/// step by more than a fiftieth of a second.
class RegistryReadCache {
 public:
  struct Reading {
    RegistryResult result = registry::kNotFound;
    std::int64_t key = 0;
    RegistryValue value;
  };

  /// Begins empty; `path` is that of the store.
  void Follow(const std::string& path);

  /// Null where the store has to be read, and also then `Remember` may be called with what it gave.
  /// A name is anything that tells one reading from all others.
  [[nodiscard]] const Reading* Find(const std::string& name);
  void Remember(std::string name, Reading reading);
  /// To be called before this process itself changes the store.
  void Forget() { readings_.clear(); }

 private:
  static constexpr std::chrono::milliseconds kLongestTrust{50};

  struct FileState {
    std::uint64_t inode = 0;
    std::int64_t size = -1;
    std::timespec changed{};
    [[nodiscard]] bool operator==(const FileState& other) const;
  };
  [[nodiscard]] static FileState StateOf(const std::string& path);
  void Look();

  std::string store_;
  std::string log_;
  FileState storeState_;
  FileState logState_;
  std::chrono::steady_clock::time_point lookedAt_;
  std::chrono::steady_clock::time_point begun_;  ///< when the oldest reading was taken
  bool settled_ = false;  ///< the last change is so old that a new one would show
  std::unordered_map<std::string, Reading> readings_;
};

}  // namespace tallowin::platform::linux_host
