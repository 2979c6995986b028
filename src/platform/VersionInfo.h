// The version resource of executable files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tallowin::platform {

/// A version resource, whole and on its own: the file may change or go meanwhile.
class VersionBlock {
 public:
  virtual ~VersionBlock() = default;

  /// The value under a path of names that are told apart without regard to case:
  /// "\" for the fixed block, "\VarFileInfo\Translation" for the list of languages and code pages,
  /// both as the bytes of the file; "\StringFileInfo\040904E4\FileVersion", say, for a text, which
  /// comes as UTF-8 and ends before its first NUL. Nothing where there is no such name; a value
  /// that is there may be empty. No byte comes from outside the resource.
  [[nodiscard]] virtual std::optional<std::string> VerQueryValue(std::string_view path) const = 0;
};

class VersionInfo {
 public:
  virtual ~VersionInfo() = default;

  /// Null for a file that has no version resource or cannot be read. The file is data: nothing of
  /// it is run, and it may be hostile. Paths as in platform/Files.h.
  [[nodiscard]] virtual std::unique_ptr<VersionBlock> GetFileVersionInfo(std::string_view path) = 0;

  /// What a language number of a version resource is called, for the user; "Language Neutral" for
  /// numbers that are no language.
  [[nodiscard]] virtual std::string VerLanguageName(std::uint16_t language) = 0;
};

}  // namespace tallowin::platform
