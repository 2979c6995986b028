// A registry file as lines of UTF-8, whichever of its encodings it is in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// UTF-16LE with a byte order mark, or bytes that are taken as UTF-8, with or without one. Lines
/// end with LF or CR LF. Decoding goes line by line, so that what stands before a broken character
/// can still be read.
class RegistryFileLines {
 public:
  explicit RegistryFileLines(std::string_view content);

  /// The next line without its end. Nothing behind the last one, or at a line that is broken.
  [[nodiscard]] std::optional<std::string> Next();
  /// Of the line that Next gave last, or that broke it; from 1.
  [[nodiscard]] int Number() const { return number_; }
  [[nodiscard]] bool Broken() const { return broken_; }

 private:
  [[nodiscard]] std::string_view TakeLine();
  [[nodiscard]] std::size_t FindLineFeed() const;

  std::string_view rest_;
  bool utf16_ = false;
  bool broken_ = false;
  int number_ = 0;
};

}  // namespace tallowin::platform::linux_host
