#include "platform/linux/WindowsDrive.h"

#include <sys/stat.h>

#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

std::vector<std::string_view> Components(std::string_view path) {
  std::vector<std::string_view> components;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    if (end > 0) components.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return components;
}

bool NameExists(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0;
}

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
  const std::vector<std::string_view> rootComponents = Components(root);
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

std::string CaseFolded(std::string_view name) {
  // Nearly all names are ASCII, and a poll folds those of a whole folder.
  if (std::ranges::any_of(name, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
    if (!decode.hasError()) return text.toCaseFolded().toStdString();
  }
  std::string folded(name);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}

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
  return path.starts_with('/') && CountBelow(root_, Components(path)) != std::string_view::npos;
}

std::string WindowsDrive::Resolve(std::string_view path) const {
  std::string given(path);
  if (!path.starts_with('/') || NameExists(given)) return given;
  const std::vector<std::string_view> components = Components(path);
  const std::size_t below = CountBelow(root_, components);
  if (below == std::string_view::npos) return given;
  std::string resolved = root_;
  for (std::size_t i = components.size() - below; i < components.size(); ++i) {
    const std::string exact = resolved + "/" + std::string(components[i]);
    resolved = NameExists(exact) ? exact : resolved + "/" + MatchInFolder(resolved, components[i]);
  }
  return resolved;
}

}  // namespace tallowin::platform::linux_host
