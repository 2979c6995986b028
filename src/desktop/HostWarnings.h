// What the host has to tell of settings that are damaged or cannot be reached.
#pragma once

#include <string>
#include <vector>

namespace tallowin::desktop {

/// On standard error at once, which whoever starts programs from a menu never sees; and in boxes,
/// which hold nothing up, as soon as there may be windows. The texts may hold foreign bytes.
class HostWarnings {
 public:
  void Add(const std::string& message);

  /// From now on there may be windows.
  void Show();

 private:
  bool windows_ = false;
  std::vector<std::string> waiting_;
};

}  // namespace tallowin::desktop
