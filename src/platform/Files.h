// What can be done with whole files: read one, delete one.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>

namespace tallowin::platform {

/// The bytes of a file, in memory from std::malloc or std::aligned_alloc that nothing has cleared:
/// files are large, and writing all of it twice would be felt. Without bytes it is an array that
/// was never dimensioned, since an empty file has no contents to give.
class FileContents {
 public:
  FileContents() = default;
  /// Takes `data` over.
  FileContents(char* data, std::size_t size) : data_(data), size_(size) {}

  [[nodiscard]] std::span<char> Bytes() { return {data_.get(), size_}; }
  [[nodiscard]] std::string_view Text() const { return {data_.get(), size_}; }

 private:
  struct Free {
    void operator()(char* data) const { std::free(data); }
  };
  std::unique_ptr<char, Free> data_;
  std::size_t size_ = 0;
};

/// Paths are those of platform/Paths.h: names on drive C are found in any case.
class Files {
 public:
  virtual ~Files() = default;

  /// The whole file as it is now; it may be in use, or be the program of a running process. What
  /// cannot be read of it, since it shrinks meanwhile or the medium fails, comes as zeros, without
  /// an error. Throws RunTimeError 9 for what cannot be opened, has no bytes, or is no ordinary
  /// file, and 7 for what this machine has no memory for. Does not wait
  /// for another program, but for the medium: a file system of the network, or one that a program
  /// serves, may hold it up.
  [[nodiscard]] virtual FileContents Read(std::string_view path) = 0;

  /// Removes the name, also that of a running program; a link goes and not what it leads to.
  /// `path` is one name, without wildcards. Throws RunTimeError 53 where there is nothing, 75
  /// where it cannot be removed.
  virtual void Delete(std::string_view path) = 0;
};

}  // namespace tallowin::platform
