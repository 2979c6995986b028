// Bytes at offsets, from a file that is read piece by piece or from memory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

class ByteSource {
 public:
  virtual ~ByteSource() = default;

  [[nodiscard]] virtual std::uint64_t Size() const = 0;
  /// Fills all of `to`. False where the source does not hold that much there; what is in `to` is
  /// then of no use.
  virtual bool Read(std::uint64_t offset, std::span<std::uint8_t> to) = 0;

  /// Little endian, as the formats of PE files have all their numbers.
  std::optional<std::uint16_t> Number16(std::uint64_t offset);
  std::optional<std::uint32_t> Number32(std::uint64_t offset);
};

/// The first byte is the lowest. The caller ensures that the bytes are there.
[[nodiscard]] std::uint16_t Little16(std::span<const std::uint8_t> bytes, std::size_t offset = 0);
[[nodiscard]] std::uint32_t Little32(std::span<const std::uint8_t> bytes, std::size_t offset = 0);

/// A file of any size costs no more memory than this object. Other programs may write to the file
/// or cut it meanwhile.
class FileBytes : public ByteSource {
 public:
  FileBytes(FileDescriptor file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

  [[nodiscard]] std::uint64_t Size() const override { return size_; }
  bool Read(std::uint64_t offset, std::span<std::uint8_t> to) override;

 private:
  bool FillWindow(std::uint64_t offset);

  FileDescriptor file_;
  std::uint64_t size_;
  /// What was read last: structures are read in pieces of a few bytes.
  std::array<std::uint8_t, 4096> window_ = {};
  std::uint64_t windowStart_ = 0;
  std::size_t windowFilled_ = 0;
};

class MemoryBytes : public ByteSource {
 public:
  /// The bytes must outlive this.
  explicit MemoryBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  [[nodiscard]] std::uint64_t Size() const override { return bytes_.size(); }
  bool Read(std::uint64_t offset, std::span<std::uint8_t> to) override;

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace tallowin::platform::linux_host
