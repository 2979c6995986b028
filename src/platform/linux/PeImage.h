// The headers of a PE file: where its resources lie.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/ByteSource.h"

namespace tallowin::platform::linux_host {

/// A part of the file that is there as far as the headers and the size of the file go.
struct FileRange {
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
};

class PeImage {
 public:
  /// Nothing where this is no PE file of 32 or 64 bit. What machine it is for does not matter.
  [[nodiscard]] static std::optional<PeImage> Parse(ByteSource& bytes);

  /// Where the program would find this address once it is loaded, up to the end of the section.
  /// Nothing for an address that comes from no bytes of the file.
  [[nodiscard]] std::optional<FileRange> At(std::uint32_t address) const;

  /// The root of the tree of resources, if the file has one.
  [[nodiscard]] std::optional<FileRange> Resources() const;

 private:
  struct Section {
    std::uint32_t address;
    std::uint32_t fileOffset;
    std::uint32_t fileSize;
  };
  void ReadSections(ByteSource& bytes, std::uint64_t offset, std::uint16_t count);

  std::uint64_t fileSize_ = 0;
  std::uint32_t resources_ = 0;
  std::vector<Section> sections_;
};

}  // namespace tallowin::platform::linux_host
