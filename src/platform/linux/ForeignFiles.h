// Reading files and folders that anybody may have put there, in bounds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallowin::platform::linux_host {

enum class Reading {
  Done,
  Absent,      ///< missing, no regular file, or a circle of links
  Forbidden,   ///< there, but not for this user
  ShortOfAll,  ///< the system was short of something or did not get at it; another try may do
};

/// Equal stamps mean that a file is as it was, but for changes within the tick of the clock.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;
  std::int64_t modified = 0;  ///< nanoseconds since 1970, as below
  std::int64_t changed = 0;   ///< also set by renaming, linking and changing rights

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// Follows links; anything but a regular file is absent.
[[nodiscard]] Reading StampOfFile(const std::string& path, FileStamp& stamp);
/// Of whatever has this name, which may be a link or a folder. All zero if there is nothing.
[[nodiscard]] FileStamp StampOfName(const std::string& path);

struct BoundedText {
  std::string text = {};
  bool whole = true;  ///< false if the file goes on behind the bound
};

/// Never waits, whatever has taken the place of the file.
[[nodiscard]] Reading ReadBounded(const std::string& path, std::size_t bound, BoundedText& text);

struct NameInFolder {
  std::string name = {};
  bool isLink = false;
  bool isFolder = false;

  friend bool operator<(const NameInFolder& a, const NameInFolder& b) { return a.name < b.name; }
};

/// Sorted by name; "." and ".." are left out.
[[nodiscard]] Reading ReadFolder(const std::string& path, std::vector<NameInFolder>& names);

/// Where a link points, as it is written. Empty for anything else.
[[nodiscard]] std::string LinkTarget(const std::string& path);

}  // namespace tallowin::platform::linux_host
