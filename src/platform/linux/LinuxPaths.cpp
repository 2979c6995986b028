#include "platform/linux/LinuxPaths.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <system_error>
#include <vector>

#include "platform/RunTimeError.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

bool HoldsNul(std::string_view path) { return path.find('\0') != std::string_view::npos; }

/// A link that leads nowhere is a name as well, though no folder.
bool IsFile(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) == 0) return !S_ISDIR(status.st_mode);
  return lstat(path.c_str(), &status) == 0;
}

/// "*" stands for any run of characters, "?" for one. Takes time in proportion to the product of
/// the lengths, whatever the pattern.
bool MatchesWildcards(std::string_view name, std::string_view pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  std::size_t starInPattern = std::string_view::npos;
  std::size_t starInName = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      starInPattern = p++;
      starInName = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++n;
      ++p;
    } else if (starInPattern != std::string_view::npos) {
      p = starInPattern + 1;
      n = ++starInName;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool AnyMatches(const std::string& folder, std::string pattern, bool anyCase) {
  if (anyCase) pattern = CaseFolded(pattern);
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (MatchesWildcards(anyCase ? CaseFolded(name) : name, pattern) &&
        IsFile(entry->path().string())) {
      return true;
    }
  }
  return false;
}

/// Relative entries are left out: what is found must not depend on where the program was started.
std::vector<std::string> FoldersOfPathVariable() {
  std::vector<std::string> folders;
  const char* variable = std::getenv("PATH");
  for (const std::string_view folder : Parts(variable != nullptr ? variable : "", ':')) {
    if (folder.front() == '/') folders.emplace_back(folder);
  }
  return folders;
}

}  // namespace

std::string AbsolutePath(std::string_view path) {
  if (path.empty()) return {};
  std::error_code error;
  const fs::path given(path);
  const fs::path absolute = given.is_absolute() ? given : fs::current_path(error) / given;
  std::vector<std::string> kept;
  for (const fs::path& component : absolute.relative_path()) {
    if (component == "..") {
      if (!kept.empty()) kept.pop_back();
    } else if (component != "." && !component.empty()) {
      kept.push_back(component.string());
    }
  }
  std::string text;
  for (const std::string& component : kept) text += "/" + component;
  return text.empty() ? "/" : text;
}

std::string LinuxPaths::ResolvedFullPath(std::string_view path) const {
  return drive_.Resolve(AbsolutePath(path));
}

bool LinuxPaths::Find(std::string_view path) const {
  if (path.empty() || path.back() == '/' || HoldsNul(path)) return false;
  const std::string full = ResolvedFullPath(path);
  if (IsFile(full)) return true;
  const std::size_t separator = full.rfind('/');
  const std::string pattern = full.substr(separator + 1);
  if (pattern.find_first_of("*?") == std::string::npos) return false;
  return AnyMatches(full.substr(0, separator + 1), pattern, drive_.Holds(full));
}

std::string LinuxPaths::MakeTempFile(std::string_view folder, std::string_view prefix) {
  constexpr unsigned kNumbers = 0x10000;
  const std::string start = ResolvedFullPath(folder) + "/" + std::string(prefix);
  const unsigned first = std::random_device()() % kNumbers;
  for (unsigned i = 0; i < kNumbers; ++i) {
    std::array<char, 5> digits = {};
    (void)std::snprintf(digits.data(), digits.size(), "%04X", (first + i) % kNumbers);
    std::string path = start + digits.data() + ".tmp";
    const FileDescriptor file(
        open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (file) return path;
    if (errno != EEXIST) break;
  }
  throw RunTimeError(error::kPathFileAccess, "Path/File access error");
}

std::string LinuxPaths::SearchPath(std::string_view fileName) const {
  if (fileName.empty() || HoldsNul(fileName)) return {};
  if (fileName.find('/') != std::string_view::npos) {
    std::string path = ResolvedFullPath(fileName);
    return IsFile(path) ? path : std::string();
  }
  const std::string windows = drive_.WindowsFolder();
  std::vector<std::string> folders = {folders_.program, drive_.SystemFolder(), windows};
  for (std::string& folder : FoldersOfPathVariable()) folders.push_back(std::move(folder));
  for (const std::string& folder : folders) {
    std::string path = drive_.Resolve(folder + "/" + std::string(fileName));
    if (IsFile(path)) return path;
  }
  return {};
}

std::string LinuxPaths::FullPath(std::string_view path) const { return AbsolutePath(path); }

std::string LinuxPaths::ShortPath(std::string_view path) const {
  if (path.empty() || HoldsNul(path)) return {};
  std::string full = ResolvedFullPath(path);
  std::error_code error;
  return fs::exists(fs::symlink_status(full, error)) ? full : std::string();
}

}  // namespace tallowin::platform::linux_host
