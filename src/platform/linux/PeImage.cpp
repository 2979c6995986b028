#include "platform/linux/PeImage.h"

#include <algorithm>

namespace tallowin::platform::linux_host {
namespace {

constexpr std::uint16_t kDosMagic = 0x5A4D;
constexpr std::uint32_t kPeMagic = 0x4550;
constexpr std::uint16_t kMagic32 = 0x10B;
constexpr std::uint16_t kMagic64 = 0x20B;
constexpr std::uint64_t kFileHeader = 24;  ///< with the signature in front of it
constexpr std::uint64_t kSectionHeader = 40;
/// Each address is looked for in all sections; more than this no linker makes.
constexpr std::uint16_t kMostSections = 1024;
constexpr std::uint32_t kResourceDirectory = 2;

/// The address of the resources from the table of directories; 0 where there are none, nothing
/// where this is no such header.
std::optional<std::uint32_t> ResourceAddress(ByteSource& bytes, std::uint64_t optionalHeader) {
  const auto magic = bytes.Number16(optionalHeader);
  const bool wide = magic == kMagic64;
  if (!wide && magic != kMagic32) return std::nullopt;
  const std::uint64_t directories = optionalHeader + (wide ? 112 : 96);
  const auto count = bytes.Number32(directories - 4);
  if (!count) return std::nullopt;
  if (*count <= kResourceDirectory) return 0;
  return bytes.Number32(directories + 8 * std::uint64_t{kResourceDirectory});
}

}  // namespace

std::optional<PeImage> PeImage::Parse(ByteSource& bytes) {
  if (bytes.Number16(0) != kDosMagic) return std::nullopt;
  const auto peHeader = bytes.Number32(0x3C);
  if (!peHeader || bytes.Number32(*peHeader) != kPeMagic) return std::nullopt;
  const std::uint64_t optionalHeader = *peHeader + kFileHeader;
  const auto resources = ResourceAddress(bytes, optionalHeader);
  const auto sections = bytes.Number16(*peHeader + std::uint64_t{6});
  const auto headerSize = bytes.Number16(*peHeader + std::uint64_t{20});
  if (!resources || !sections || !headerSize) return std::nullopt;
  PeImage image;
  image.fileSize_ = bytes.Size();
  image.resources_ = *resources;
  image.ReadSections(bytes, optionalHeader + *headerSize, std::min(*sections, kMostSections));
  return image;
}

void PeImage::ReadSections(ByteSource& bytes, std::uint64_t offset, std::uint16_t count) {
  for (; count > 0; --count, offset += kSectionHeader) {
    std::array<std::uint8_t, kSectionHeader> header = {};
    if (!bytes.Read(offset, header)) return;
    sections_.push_back({.address = Little32(header, 12),
                         .fileOffset = Little32(header, 20),
                         .fileSize = Little32(header, 16)});
  }
}

std::optional<FileRange> PeImage::At(std::uint32_t address) const {
  for (const Section& section : sections_) {
    if (address < section.address || address - section.address >= section.fileSize) continue;
    const std::uint64_t within = address - section.address;
    const std::uint64_t offset = section.fileOffset + within;
    if (offset >= fileSize_) return std::nullopt;
    return FileRange{offset, std::min(section.fileSize - within, fileSize_ - offset)};
  }
  return std::nullopt;
}

std::optional<FileRange> PeImage::Resources() const {
  return resources_ == 0 ? std::nullopt : At(resources_);
}

}  // namespace tallowin::platform::linux_host
