#include "platform/linux/WindowsDrive.h"

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

std::size_t CountBelow(const std::string& root, const std::vector<std::string_view>& components) {
  const std::vector<std::string_view> rootComponents = Parts(root, '/');
  if (components.size() < rootComponents.size()) return std::string_view::npos;
  for (std::size_t i = 0; i < rootComponents.size(); ++i) {
    if (components[i] != rootComponents[i] &&
        CaseFolded(components[i]) != CaseFolded(rootComponents[i])) {
      return std::string_view::npos;
    }
  }
  return components.size() - rootComponents.size();
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
  return path.starts_with('/') && CountBelow(root_, Parts(path, '/')) != std::string_view::npos;
}

std::string WindowsDrive::Resolve(std::string_view path) const {
  std::string given(path);
  if (!path.starts_with('/') || NameExists(given)) return given;
  const std::vector<std::string_view> components = Parts(path, '/');
  const std::size_t below = CountBelow(root_, components);
  if (below == std::string_view::npos) return given;
  std::string resolved = root_;
  for (std::size_t i = components.size() - below; i < components.size(); ++i) {
    const std::string folder = resolved;
    resolved.append("/").append(components[i]);
    if (NameExists(resolved)) continue;
    resolved.resize(folder.size() + 1);
    resolved += MatchInFolder(folder, components[i]);
  }
  return resolved;
}

}  // namespace tallowin::platform::linux_host
