// Files that were read and understood once and have not changed since.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {

/// `Content` has a constructor from BoundedText. A file that is as it was costs one look at its
/// stamp.
template <class Content>
class ParsedFiles {
 public:
  explicit ParsedFiles(std::size_t bound) : bound_(bound) {}

  /// What was not asked for between these two is forgotten.
  void BeginLook() { ++look_; }
  void EndLook() {
    std::erase_if(files_, [this](const auto& file) { return file.second.look != look_; });
  }

  /// On anything but Done `content` is null.
  [[nodiscard]] Reading Get(const std::string& path, std::shared_ptr<const Content>& content) {
    content.reset();
    FileStamp stamp;
    const Reading found = StampOfFile(path, stamp);
    if (found != Reading::Done) return found;
    File& file = files_[path];
    file.look = look_;
    if (!file.content || !(file.stamp == stamp) || !file.settled) {
      const std::int64_t now = Now();
      BoundedText text;
      const Reading result = ReadBounded(path, bound_, text);
      if (result != Reading::Done) {
        files_.erase(path);
        return result;
      }
      // A file may change twice within a tick of the file system's clock and keep its stamp.
      file.settled = stamp.changed + kTickOfTheClock < now;
      file.stamp = stamp;
      file.content = std::make_shared<const Content>(text);
    }
    content = file.content;
    return Reading::Done;
  }

 private:
  struct File {
    FileStamp stamp = {};
    bool settled = false;
    std::uint64_t look = 0;
    std::shared_ptr<const Content> content = {};
  };

  static constexpr std::int64_t kTickOfTheClock = 100'000'000;

  static std::int64_t Now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  }

  std::size_t bound_;
  std::uint64_t look_ = 0;
  std::map<std::string, File> files_;
};

}  // namespace tallowin::platform::linux_host
