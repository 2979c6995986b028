// What was undone, kept so that the user can put it back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"

namespace tallowin::platform::linux_host {

/// The error of a system call as a result of the registry.
[[nodiscard]] RegistryResult TranslateFileError(int error);

/// Each undoing has a folder of its own, named by date and time; in it a file lies under the whole
/// path that it had.
class UndoneCopies {
 public:
  explicit UndoneCopies(std::string folder) : folder_(std::move(folder)) {}

  /// Moves files or links away from where they are: all of them, or none if the user may not. A
  /// link moves as a link.
  [[nodiscard]] RegistryResult MoveAway(const std::vector<std::string>& paths) const;

  /// Keeps `text` as the copy of what lies at `path`, durably, before that is changed.
  [[nodiscard]] RegistryResult Keep(std::string_view path, std::string_view text) const;

 private:
  [[nodiscard]] std::string NewFolder() const;

  std::string folder_;
};

}  // namespace tallowin::platform::linux_host
