// Files read whole.
#pragma once

#include <string>
#include <string_view>

#include "core/MiscRoutines.h"
#include "platform/Files.h"

namespace tallowin::analysis {

/// Both give nothing where MiscRoutines::FileExists says no, and pass on the errors of
/// platform::Files::Read: 9 for a file that is empty or cannot be opened.
class ReadFile {
 public:
  ReadFile(const core::MiscRoutines& misc, platform::Files& files) : misc_(misc), files_(files) {}

  [[nodiscard]] platform::FileContents ReadFileAsBytes(std::string_view path);
  /// One character per byte, those that are 0 included.
  [[nodiscard]] std::string ReadFileAsText(std::string_view path);

 private:
  const core::MiscRoutines& misc_;
  platform::Files& files_;
};

}  // namespace tallowin::analysis
