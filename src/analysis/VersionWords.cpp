#include "analysis/VersionWords.h"

#include <array>
#include <cstddef>
#include <utility>

namespace tallowin::analysis {
namespace {

std::uint32_t NumberAt(std::string_view bytes, std::size_t field) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t at = 4 * field + i;
    if (at < bytes.size()) number |= std::uint32_t{static_cast<unsigned char>(bytes[at])} << 8 * i;
  }
  return number;
}

std::uint32_t HighWord(std::uint32_t number) { return number >> 16U; }
std::uint32_t LowWord(std::uint32_t number) { return number & 0xFFFFU; }

std::string Padded(std::uint32_t number, std::size_t digits) {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return text;
}

constexpr std::uint32_t kDriver = 3;
constexpr std::uint32_t kFont = 4;

constexpr std::array<std::string_view, 11> kDriverWords = {
    "Unknown",     "Printer drv", "Keyboard drv", "Language drv", "Display drv", "Mouse drv",
    "Network drv", "System drv",  "Installable",  "Sound drv",    "Comm drv"};
constexpr std::array<std::string_view, 4> kFontWords = {"", "Raster Font", "Vector Font",
                                                        "TrueType Font"};

}  // namespace

FixedFileInfo FixedFileInfo::Parse(std::string_view bytes) {
  return {.structureVersion = NumberAt(bytes, 1),
          .fileVersionHigh = NumberAt(bytes, 2),
          .fileVersionLow = NumberAt(bytes, 3),
          .productVersionHigh = NumberAt(bytes, 4),
          .productVersionLow = NumberAt(bytes, 5),
          .fileFlags = NumberAt(bytes, 7),
          .fileOS = NumberAt(bytes, 8),
          .fileType = NumberAt(bytes, 9),
          .fileSubType = NumberAt(bytes, 10)};
}

std::string StructureVersionText(std::uint32_t version) {
  return std::to_string(HighWord(version)) + "." + std::to_string(LowWord(version));
}

std::string VersionNumberText(std::uint32_t high, std::uint32_t low) {
  const std::string start = std::to_string(HighWord(high)) + "." + Padded(LowWord(high), 2) + ".";
  if (HighWord(low) == 0) return start + Padded(LowWord(low), 4);
  return start + Padded(HighWord(low), 2) + Padded(LowWord(low), 2);
}

std::string FileFlagsText(std::uint32_t flags) {
  constexpr std::array<std::string_view, 6> kWords = {"Debug",   "PreRel", "Patched",
                                                      "Private", "Info",   "Special"};
  std::string text;
  for (std::size_t bit = 0; bit < kWords.size(); ++bit) {
    if ((flags >> bit & 1U) == 0) continue;
    if (!text.empty()) text += ' ';
    text += kWords.at(bit);
  }
  return text;
}

std::string FileOSText(std::uint32_t os) {
  switch (os) {
    case 0x10001:
      return "DOS-Win16";
    case 0x10004:
      return "DOS-Win32";
    case 0x20002:
      return "OS/2-16 PM-16";
    case 0x30003:
      return "OS/2-16 PM-32";
    case 0x40004:
      return "NT-Win32";
    default:
      return "Unknown";
  }
}

std::string FileTypeText(std::uint32_t type) {
  switch (type) {
    case 1:
      return "Application";
    case 2:
      return "DLL";
    case kDriver:
      return "Driver";
    case kFont:
      return "Font";
    case 5:
      return "VxD";
    case 7:
      return "Lib";
    default:
      return "Unknown";
  }
}

std::optional<std::string> FileSubTypeText(std::uint32_t type, std::uint32_t subType) {
  if (type == kDriver && subType < kDriverWords.size()) {
    return std::string(kDriverWords.at(subType));
  }
  if (type == kFont && subType > 0 && subType < kFontWords.size()) {
    return std::string(kFontWords.at(subType));
  }
  return std::nullopt;
}

}  // namespace tallowin::analysis
