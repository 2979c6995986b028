// Executable files of a test's own making, for what no compiler would write.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin::platform::linux_host::test {

inline constexpr std::uint32_t kTreeAddress = 0x1000;
inline constexpr std::uint32_t kFolderFlag = 0x80000000;

inline void Put(std::string& bytes, std::size_t at, std::uint32_t number, std::size_t size = 4) {
  if (bytes.size() < at + size) bytes.resize(at + size);
  for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(number >> 8 * i);
}

struct TreeEntry {
  std::uint32_t id;
  std::uint32_t target;
};

inline void PutDirectory(std::string& tree, std::size_t at, const std::vector<TreeEntry>& entries) {
  Put(tree, at + 14, static_cast<std::uint32_t>(entries.size()), 2);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    Put(tree, at + 16 + 8 * i, entries[i].id);
    Put(tree, at + 20 + 8 * i, entries[i].target);
  }
}

/// Where `data` lies in the tree, for the entry of a language.
inline void PutLeaf(std::string& tree, std::size_t at, std::uint32_t data, std::uint32_t size) {
  Put(tree, at, kTreeAddress + data);
  Put(tree, at + 4, size);
  Put(tree, at + 8, 0);
  Put(tree, at + 12, 0);
}

/// A file of 32 bit whose only section is the tree of resources.
inline std::string PeFile(const std::string& tree) {
  constexpr std::size_t kPe = 0x40;
  constexpr std::size_t kOptional = kPe + 24;
  constexpr std::uint32_t kSection = kOptional + 224;
  std::string file = "MZ";
  Put(file, 0x3C, kPe);
  Put(file, kPe, 0x4550);
  Put(file, kPe + 6, 1, 2);
  Put(file, kPe + 20, 224, 2);
  Put(file, kOptional, 0x10B, 2);
  Put(file, kOptional + 92, 16);
  Put(file, kOptional + 112, kTreeAddress);
  Put(file, kSection + 12, kTreeAddress);
  Put(file, kSection + 16, static_cast<std::uint32_t>(tree.size()));
  Put(file, kSection + 20, 0x200);
  file.resize(0x200);
  return file + tree;
}

}  // namespace tallowin::platform::linux_host::test
