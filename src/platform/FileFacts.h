// What a directory and the desktop know about one file.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallowin::platform {

namespace attribute {
inline constexpr std::uint32_t kReadOnly = 1;
inline constexpr std::uint32_t kHidden = 2;
inline constexpr std::uint32_t kSystem = 4;
inline constexpr std::uint32_t kFolder = 16;
inline constexpr std::uint32_t kArchive = 32;
inline constexpr std::uint32_t kNormal = 128;  ///< stands alone, where no other does
inline constexpr std::uint32_t kTemporary = 256;
inline constexpr std::uint32_t kSparse = 512;
inline constexpr std::uint32_t kLink = 1024;
inline constexpr std::uint32_t kCompressed = 2048;
}  // namespace attribute

using FileTime = std::chrono::system_clock::time_point;

/// An entry of a directory. The host's names are bytes, mostly UTF-8.
struct FoundFile {
  std::string fileName;       ///< as on disk
  std::string alternateName;  ///< the short name; empty on hosts without short names
  std::uint32_t attributes = 0;
  std::uint64_t size = 0;
  std::optional<FileTime> creationTime;  ///< nothing where the file system does not keep it
  FileTime lastAccessTime;
  FileTime modifyTime;
};

enum class FileTimeKind { Creation, LastAccess, Modify };

/// The picture of a file's type, by its names in the icon theme.
struct FileIcon {
  std::string name;
  std::string genericName;  ///< for themes without the first
};

/// The file as the desktop presents it, in the user's language.
struct ShellFileInfo {
  std::string displayName;
  std::string typeName;  ///< empty for a type that the desktop does not know
  FileIcon icon;
};

/// Paths are those of platform/Paths.h: names on drive C are found in any case.
class FileFacts {
 public:
  virtual ~FileFacts() = default;

  /// The entry of this name, of a file of any kind or a folder, without opening it. No wildcards.
  /// Links are followed, but for the name; one that leads nowhere is an entry of its own.
  [[nodiscard]] virtual std::optional<FoundFile> FindFirstFile(std::string_view path) = 0;

  /// The room that a compressed or sparse file takes on the disk; of any other file its size, and
  /// 0 where there is none.
  [[nodiscard]] virtual std::uint64_t GetCompressedFileSize(std::string_view path) = 0;

  /// May read the first kilobytes of an ordinary file. All empty where there is no file.
  [[nodiscard]] virtual ShellFileInfo GetShellFileInfo(std::string_view path) = 0;

  /// False where not all of the attributes can be made so, and then nothing has changed.
  virtual bool SetFileAttributes(std::string_view path, std::uint32_t attributes) = 0;

  /// Sets this time alone, also of a folder. False where that is not possible.
  virtual bool SetFileTime(std::string_view path, FileTimeKind kind, FileTime time) = 0;
};

}  // namespace tallowin::platform
