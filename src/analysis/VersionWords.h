// The fixed block of a version resource, in words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallowin::analysis {

/// VS_FIXEDFILEINFO, as far as it is shown.
struct FixedFileInfo {
  std::uint32_t structureVersion = 0;
  std::uint32_t fileVersionHigh = 0;
  std::uint32_t fileVersionLow = 0;
  std::uint32_t productVersionHigh = 0;
  std::uint32_t productVersionLow = 0;
  std::uint32_t fileFlags = 0;
  std::uint32_t fileOS = 0;
  std::uint32_t fileType = 0;
  std::uint32_t fileSubType = 0;

  /// From the 52 bytes of the block; what is missing of them counts as 0.
  [[nodiscard]] static FixedFileInfo Parse(std::string_view bytes);
};

/// "4.0".
[[nodiscard]] std::string StructureVersionText(std::uint32_t version);
/// "4.01.0001" for 4, 1, 0, 1 and "1.02.0304" for 1, 2, 3, 4.
[[nodiscard]] std::string VersionNumberText(std::uint32_t high, std::uint32_t low);
[[nodiscard]] std::string FileFlagsText(std::uint32_t flags);
[[nodiscard]] std::string FileOSText(std::uint32_t os);
[[nodiscard]] std::string FileTypeText(std::uint32_t type);
/// Nothing where there is no word, and then the text before it is to stay.
[[nodiscard]] std::optional<std::string> FileSubTypeText(std::uint32_t type, std::uint32_t subType);

}  // namespace tallowin::analysis
