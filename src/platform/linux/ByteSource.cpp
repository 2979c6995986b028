#include "platform/linux/ByteSource.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tallowin::platform::linux_host {
namespace {

bool Holds(std::uint64_t size, std::uint64_t offset, std::size_t count) {
  return offset <= size && count <= size - offset;
}

/// How many bytes came.
std::size_t ReadAt(int descriptor, std::uint64_t offset, std::span<std::uint8_t> to) {
  std::size_t done = 0;
  while (done < to.size()) {
    const ssize_t count =
        pread(descriptor, to.data() + done, to.size() - done, static_cast<off_t>(offset + done));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

}  // namespace

std::uint16_t Little16(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

std::uint32_t Little32(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return Little16(bytes, offset) | static_cast<std::uint32_t>(Little16(bytes, offset + 2)) << 16U;
}

std::optional<std::uint16_t> ByteSource::Number16(std::uint64_t offset) {
  std::array<std::uint8_t, 2> bytes = {};
  if (!Read(offset, bytes)) return std::nullopt;
  return Little16(bytes);
}

std::optional<std::uint32_t> ByteSource::Number32(std::uint64_t offset) {
  std::array<std::uint8_t, 4> bytes = {};
  if (!Read(offset, bytes)) return std::nullopt;
  return Little32(bytes);
}

bool FileBytes::FillWindow(std::uint64_t offset) {
  windowStart_ = offset;
  windowFilled_ = ReadAt(file_.Get(), offset, window_);
  return windowFilled_ > 0;
}

bool FileBytes::Read(std::uint64_t offset, std::span<std::uint8_t> to) {
  if (!Holds(size_, offset, to.size())) return false;
  if (to.size() > window_.size()) return ReadAt(file_.Get(), offset, to) == to.size();
  const auto inWindow = [&] {
    return offset >= windowStart_ && Holds(windowFilled_, offset - windowStart_, to.size());
  };
  if (!inWindow() && (!FillWindow(offset) || !inWindow())) return false;
  std::copy_n(window_.data() + (offset - windowStart_), to.size(), to.data());
  return true;
}

bool MemoryBytes::Read(std::uint64_t offset, std::span<std::uint8_t> to) {
  if (!Holds(bytes_.size(), offset, to.size())) return false;
  std::copy_n(bytes_.data() + offset, to.size(), to.data());
  return true;
}

}  // namespace tallowin::platform::linux_host
