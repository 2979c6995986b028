// A file descriptor with an owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace tallowin::platform::linux_host {

/// Closes the descriptor when it is destroyed. Empty when it holds -1.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  [[nodiscard]] int Get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

}  // namespace tallowin::platform::linux_host
