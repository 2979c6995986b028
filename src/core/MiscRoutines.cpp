#include "core/MiscRoutines.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <system_error>

#include "platform/RunTimeError.h"

namespace tallowin::core {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kLineLength = 72;

constexpr std::array<int, 256> MakeDecodeTable() {
  std::array<int, 256> table = {};
  table.fill(-1);
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
    table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<int>(i);
  }
  return table;
}
constexpr std::array<int, 256> kDecodeTable = MakeDecodeTable();

/// What lines of the usual length with their line ends hold; the rest is taken as one line.
std::size_t EstimatedLength(std::size_t textLength) {
  constexpr std::size_t kLineWithEnd = kLineLength + 2;
  constexpr std::size_t kBytesInLine = kLineLength / 4 * 3;
  return textLength / kLineWithEnd * kBytesInLine + textLength % kLineWithEnd * 3 / 4;
}

char LowByte(unsigned bits) { return static_cast<char>(bits & 0xFFU); }

}  // namespace

std::string BoolText(std::int16_t flag) { return flag == -1 ? "True" : "False"; }

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::string DigitsOnly(std::string_view text) {
  std::string digits;
  std::ranges::copy_if(text, std::back_inserter(digits),
                       [](char c) { return c >= '0' && c <= '9'; });
  return digits;
}

std::string ReplaceChar(std::string_view text, std::string_view find, std::string_view insert) {
  std::string replaced;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view character = text.substr(i, 1);
    replaced += character == find ? insert : character;
  }
  return replaced;
}

std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view insert) {
  std::string replaced;
  for (auto at = text.find(find); at != std::string_view::npos; at = text.find(find)) {
    replaced.append(text.substr(0, at)).append(insert);
    text.remove_prefix(at + find.size());
  }
  return replaced.append(text);
}

std::int16_t RemoveDuplicates(forms::ItemList& list) {
  // Removed in one step at the end: strangers can make a list long, and to close up each gap by
  // itself would take a time that grows with its square.
  std::vector<bool> keep(list.ListCount(), true);
  std::int16_t comparisons = 0;
  for (std::size_t earlier = 0; earlier < keep.size(); ++earlier) {
    if (!keep[earlier]) continue;
    for (std::size_t later = earlier + 1; later < keep.size(); ++later) {
      if (!keep[later]) continue;
      if (comparisons == std::numeric_limits<std::int16_t>::max()) {
        list.Keep(keep);
        throw platform::RunTimeError(platform::error::kOverflow, "Overflow");
      }
      ++comparisons;
      keep[later] = list.List(later) != list.List(earlier);
    }
  }
  list.Keep(keep);
  return comparisons;
}

std::string Base64Decode(std::string_view text) {
  std::string bytes;
  bytes.reserve(EstimatedLength(text.size()));
  unsigned bits = 0;
  int inGroup = 0;
  for (const char c : text) {
    const int value = kDecodeTable[static_cast<unsigned char>(c)];
    if (value < 0) continue;
    bits = (bits << 6U) | static_cast<unsigned>(value);
    if (++inGroup < 4) continue;
    bytes += {LowByte(bits >> 16U), LowByte(bits >> 8U), LowByte(bits)};
    bits = 0;
    inGroup = 0;
  }
  if (inGroup == 2) bytes += LowByte(bits >> 4U);
  if (inGroup == 3) bytes += {LowByte(bits >> 10U), LowByte(bits >> 2U)};
  return bytes;
}

std::string Base64Encode(std::string_view bytes) {
  std::string text;
  std::size_t written = 0;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view group = bytes.substr(i, 3);
    unsigned bits = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      bits = (bits << 8U) | (k < group.size() ? static_cast<unsigned char>(group[k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += k <= group.size() ? kAlphabet[(bits >> (18U - 6U * k)) & 0x3FU] : '=';
    }
    written += 4;
    if (written % kLineLength == 0) text += "\r\n";
  }
  return text;
}

std::string MiscRoutines::MakeTempFileName() {
  try {
    std::string name = paths_.MakeTempFile(paths_.DriveC(), "TW");
    std::error_code error;
    std::filesystem::remove(name, error);
    return name;
  } catch (const platform::RunTimeError&) {
    return {};
  }
}

std::string MiscRoutines::FindOnPath(std::string_view fileName) const {
  if (fileName.empty()) return {};
  std::string found = paths_.SearchPath(fileName);
  std::erase(found, '\0');
  return found;
}

std::string MiscRoutines::GetShortPath(std::string_view path) const {
  return paths_.ShortPath(path);
}

std::string MiscRoutines::GetFullPath(std::string_view path) const { return paths_.FullPath(path); }

void MiscRoutines::WaitForMilliseconds(std::int32_t delay) {
  if (delay <= 0) return;
  // Nothing reads a clock here, and what comes behind a call of this must not be reached: only the
  // end of the program leaves the wait. Turn follows upon turn without a rest.
  bool turning = false;
  loop_.RunUntil([this, &turning] {
    if (!turning) loop_.Post([&turning] { turning = false; });
    turning = true;
    return false;
  });
}

}  // namespace tallowin::core
