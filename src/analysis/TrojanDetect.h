// How much a file or a text looks like a backdoor: a plain search for words, no more than a hint.
#pragma once

#include <string>
#include <string_view>

#include "analysis/ReadFile.h"
#include "platform/EventLoop.h"

namespace tallowin::analysis {

/// `text` without the NUL characters at its end.
[[nodiscard]] std::string StripTrailingNulls(std::string_view text);

/// Errors of reading a file are passed on.
class TrojanDetect {
 public:
  TrojanDetect(const core::MiscRoutines& misc, ReadFile& readFile, platform::EventLoop& loop)
      : misc_(misc), readFile_(readFile), loop_(loop) {}

  /// "High", "Medium" or "Safe", by the worst word that occurs. Leaves `text` in lower case. The
  /// message loop runs once.
  std::string RateSuspicion(std::string& text);

  /// The same for what is in a file; "File Not Found" where there is none.
  std::string GetFileSuspicion(std::string_view path);

  /// "No Virii Found" for any file, as there are no signatures; "File Not Found" where there is
  /// none.
  [[nodiscard]] std::string ScanFileForVirii(std::string_view path) const;

 private:
  std::string Rate(std::span<char> text);

  const core::MiscRoutines& misc_;
  ReadFile& readFile_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::analysis
