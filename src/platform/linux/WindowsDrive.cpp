#include "platform/linux/WindowsDrive.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/linux/Files.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

/// Where several names differ from `name` in case only, the first in byte order is taken.
std::string MatchInFolder(const std::string& folder, std::string_view name) {
  std::string best;
  const std::string folded = CaseFolded(name);
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::string candidate = entry->path().filename().string();
    if (CaseFolded(candidate) != folded) continue;
    if (best.empty() || candidate < best) best = std::move(candidate);
  }
  return best.empty() ? std::string(name) : best;
}

/// Whether both go the same way, but for case, as far as the shorter of them goes.
bool SameWay(const std::vector<std::string_view>& one, const std::vector<std::string_view>& other) {
  for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
    if (one[i] != other[i] && CaseFolded(one[i]) != CaseFolded(other[i])) return false;
  }
  return true;
}

std::string MadeFolder(std::string folder, bool make) {
  std::error_code error;
  if (make) fs::create_directories(folder, error);
  return folder;
}

}  // namespace

WindowsDrive::WindowsDrive(const LinuxFolders& folders) {
  const std::string prefix =
      folders.winePrefix.empty() ? folders.home + "/.wine" : folders.winePrefix;
  std::error_code error;
  ours_ = !fs::is_directory(prefix + "/drive_c", error);
  root_ = (ours_ ? folders.data : prefix) + "/drive_c";
}

std::string WindowsDrive::Root() const { return MadeFolder(root_, ours_); }

std::string WindowsDrive::WindowsFolder() const { return MadeFolder(root_ + "/windows", ours_); }

std::string WindowsDrive::SystemFolder() const {
  return MadeFolder(root_ + "/windows/system32", ours_);
}

bool WindowsDrive::Holds(std::string_view path) const {
  const std::vector<std::string_view> way = Parts(root_, '/');
  const std::vector<std::string_view> components = Parts(path, '/');
  return path.starts_with('/') && components.size() >= way.size() && SameWay(way, components);
}

std::string WindowsDrive::Resolve(std::string_view path) const {
  std::string given(path);
  if (!path.starts_with('/') || NameExists(given)) return given;
  const std::vector<std::string_view> components = Parts(path, '/');
  const std::vector<std::string_view> way = Parts(root_, '/');
  if (!SameWay(way, components)) return given;
  std::string resolved;
  for (std::size_t i = 0; i < std::min(way.size(), components.size()); ++i) {
    resolved.append("/").append(way[i]);
  }
  for (std::size_t i = way.size(); i < components.size(); ++i) {
    const std::string folder = resolved;
    resolved.append("/").append(components[i]);
    if (NameExists(resolved)) continue;
    resolved.resize(folder.size() + 1);
    resolved += MatchInFolder(folder, components[i]);
  }
  return resolved;
}

}  // namespace tallowin::platform::linux_host
