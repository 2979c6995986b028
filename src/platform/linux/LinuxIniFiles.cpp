#include "platform/linux/LinuxIniFiles.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

#include "platform/linux/Files.h"
#include "platform/linux/ForeignFiles.h"
#include "platform/linux/IniText.h"

namespace tallowin::platform::linux_host {
namespace {

/// Far more than such files hold; the watch may read one six times at each tick.
constexpr std::size_t kLargestFile = std::size_t{1} << 20U;

/// Nothing if it cannot be read whole or is no regular file.
std::optional<std::string> ReadWhole(const std::string& path) {
  BoundedText text;
  if (ReadBounded(path, kLargestFile, text) != Reading::Done || !text.whole) return std::nullopt;
  return std::move(text.text);
}

/// The file behind symbolic links; nothing for a link that leads nowhere.
std::optional<std::string> RealFile(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                         &std::free);
  if (real != nullptr) return std::string(real.get());
  struct stat status = {};
  if (errno != ENOENT || lstat(path.c_str(), &status) == 0) return std::nullopt;
  return path;
}

bool FitsInLine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

}  // namespace

std::string LinuxIniFiles::GetPrivateProfileString(std::string_view fileName,
                                                   std::string_view section, std::string_view key,
                                                   std::size_t bufferSize) {
  if (bufferSize == 0) return {};
  const IniAnswers::Question question(fileName, section, key, bufferSize);
  if (const std::string* known = answers_.Find(question)) return *known;

  const std::string path = drive_.Resolve(fileName);
  answers_.Observe({path, FoldersOf(path)});
  // Only from here on would a change of the folders be seen.
  const bool seen = drive_.Resolve(fileName) == path;
  BoundedText text;
  const Reading result = ReadBounded(path, kLargestFile, text);
  if (result == Reading::ShortOfAll) {
    // For want of descriptors, say. It does not mean that the value has gone.
    const std::string* old = answers_.FindOld(question);
    return old == nullptr ? std::string() : *old;
  }
  std::string value(IniValue(text.text, section, key).substr(0, bufferSize - 1));
  if (seen) answers_.Keep(question, value);
  return value;
}

std::vector<std::string> LinuxIniFiles::FoldersOf(const std::string& path) const {
  std::vector<std::string> folders;
  std::string folder = std::filesystem::path(path).parent_path().string();
  for (; drive_.Holds(folder); folder = std::filesystem::path(folder).parent_path().string()) {
    folders.push_back(folder);
  }
  return folders;
}

bool LinuxIniFiles::WritePrivateProfileString(std::string_view fileName, std::string_view section,
                                              std::string_view key, std::string_view value) {
  if (key.empty() || !FitsInLine(section) || !FitsInLine(key) || !FitsInLine(value)) return false;
  const std::optional<std::string> path = RealFile(drive_.Resolve(fileName));
  if (!path) return false;
  answers_.Clear();
  std::string text;
  if (access(path->c_str(), F_OK) == 0) {
    const std::optional<std::string> old = ReadWhole(*path);
    if (!old || access(path->c_str(), W_OK) != 0) return false;
    text = *old;
  }
  return ReplaceFile(*path, WithIniValue(text, section, key, value)) == 0;
}

}  // namespace tallowin::platform::linux_host
