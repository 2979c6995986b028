// Whether something has changed in a set of folders, by the kernel's own word.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// The folders are named anew at each look: a folder that was replaced, or has come into being, is
/// found in that way, and no event has to be understood. An event only says "look again".
class FolderWatch {
 public:
  FolderWatch();

  /// True if something has happened since the last call.
  [[nodiscard]] bool HasChanged();
  /// True if something may happen that `HasChanged` is not told of: there was no watch to be had
  /// for a folder, or it lies on another machine.
  [[nodiscard]] bool MayLoseEvents() const { return mayLose_; }

  /// Between these two, a look names its folders, each before it reads it. Those that are not
  /// named any more are forgotten.
  void BeginLook();
  void EndLook();
  /// The folder need not exist: then the nearest one above it is watched for its coming.
  void Name(const std::string& folder);

 private:
  [[nodiscard]] bool Add(const std::string& folder, std::uint32_t events);
  [[nodiscard]] std::string AddNearestAbove(const std::string& folder);

  FileDescriptor events_;
  std::set<int> watches_;
  std::set<int> before_;
  bool mayLose_ = false;
};

}  // namespace tallowin::platform::linux_host
