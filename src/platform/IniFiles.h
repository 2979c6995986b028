// Keys in sections of INI files, with the rules of the Windows calls.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// Files are given by full path; a path below the Windows folder or drive C is matched without
/// regard to case. Section and key names are matched without regard to case and to blanks around
/// them; the first match counts. Line ends may be CR LF or LF. Bytes pass through as they are.
class IniFiles {
 public:
  virtual ~IniFiles() = default;

  /// The value, without blanks around it and without one pair of quotes around it ('...' or "...").
  /// Empty text if the file, the section or the key is missing. Of a longer value the first
  /// `bufferSize` - 1 bytes.
  [[nodiscard]] virtual std::string GetPrivateProfileString(std::string_view fileName,
                                                            std::string_view section,
                                                            std::string_view key,
                                                            std::size_t bufferSize) = 0;

  /// Sets the value, making file, section and key where they are missing, and keeps every other
  /// byte of the file: comments, order, quotes, line ends. An empty value leaves the key with
  /// nothing behind its equals sign. The file is replaced in one step, keeping its permissions.
  /// False if it could not be written; the old file is whole then.
  virtual bool WritePrivateProfileString(std::string_view fileName, std::string_view section,
                                         std::string_view key, std::string_view value) = 0;
};

}  // namespace tallowin::platform
