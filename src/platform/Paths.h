// Folders of the system and of the program, and what can be asked of paths beyond std::filesystem.
#pragma once

#include <string>
#include <string_view>

namespace tallowin::platform {

/// All paths are absolute, in UTF-8 bytes, with the host's separator. Folders come without a
/// separator at their end (but for a bare root).
class Paths {
 public:
  virtual ~Paths() = default;

  [[nodiscard]] virtual char Separator() const = 0;

  /// Where the program keeps "Logs", "defaults.reg" and the other files beside it. Can be written.
  [[nodiscard]] virtual std::string ProgramFolder() const = 0;
  /// Empty if the host has none.
  [[nodiscard]] virtual std::string WindowsFolder() const = 0;
  [[nodiscard]] virtual std::string SystemFolder() const = 0;
  /// The folder that stands for the root of drive C.
  [[nodiscard]] virtual std::string DriveC() const = 0;

  /// True if the directory search for `path` finds a name: a file of any kind, hidden ones
  /// included, but not a folder. Wildcards * and ? are allowed in the last component.
  [[nodiscard]] virtual bool Find(std::string_view path) const = 0;

  /// Creates a new empty file whose name starts with `prefix`, and returns its full path; throws
  /// RunTimeError 75 if the folder cannot be written. The caller owns the file.
  virtual std::string MakeTempFile(std::string_view folder, std::string_view prefix) = 0;

  /// The file found on the default search path (the program's folder, the system and Windows
  /// folders, then PATH) or, for a name with a separator in it, that file itself. Empty if there
  /// is none. The text is taken as one name: no quotes, no arguments.
  [[nodiscard]] virtual std::string SearchPath(std::string_view fileName) const = 0;

  /// The path made absolute against the current folder, with "." and ".." resolved in the text.
  [[nodiscard]] virtual std::string FullPath(std::string_view path) const = 0;
  /// The short form of an existing path; on a host without short names the path itself. Empty if
  /// the path does not exist.
  [[nodiscard]] virtual std::string ShortPath(std::string_view path) const = 0;
};

}  // namespace tallowin::platform
