// Small routines that several subsystems share: text, paths, files, base64.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/Controls.h"
#include "platform/EventLoop.h"
#include "platform/Paths.h"

namespace tallowin::core {

/// "True" for -1, the one true value of a 16-bit boolean; "False" for anything else.
[[nodiscard]] std::string BoolText(std::int16_t flag);

/// `text` with A to Z as a to z.
[[nodiscard]] std::string LowerCase(std::string_view text);
/// `text` with a to z as A to Z.
[[nodiscard]] std::string UpperCase(std::string_view text);

/// Without the blanks at both ends; tabs stay. Points into `text`.
[[nodiscard]] std::string_view Trim(std::string_view text);

/// `text` without every character other than "0" to "9".
[[nodiscard]] std::string DigitsOnly(std::string_view text);

/// `text` with `insert` in place of each `find`, which is one character: a longer or an empty one
/// is never met. What is inserted is not searched again.
[[nodiscard]] std::string ReplaceChar(std::string_view text, std::string_view find,
                                      std::string_view insert);

/// `text` with `insert` in place of each `find`, once from front to end: what comes about by that
/// stays. `find` must not be empty.
[[nodiscard]] std::string ReplaceAll(std::string_view text, std::string_view find,
                                     std::string_view insert);

/// Removes each item that equals an earlier one, case counting, and returns the number of
/// comparisons. Throws 6 "Overflow" at the comparison that a 16-bit number cannot count any more;
/// what was removed until then stays removed.
std::int16_t RemoveDuplicates(forms::ItemList& list);

/// A dynamic array has no bounds until it is first dimensioned; an array with bounds is not empty,
/// even if all its slots are.
template <typename T>
[[nodiscard]] bool IsArrayEmpty(const std::optional<std::vector<T>>& array) {
  return !array.has_value();
}

/// One character per byte. Every character outside the alphabet is skipped, the pad among them; a
/// last group of two characters gives one byte, of three two bytes.
[[nodiscard]] std::string Base64Decode(std::string_view text);

/// In lines of 72 characters: CR LF follows each 72, also where nothing more comes.
[[nodiscard]] std::string Base64Encode(std::string_view bytes);

/// The routines that need the host. None reports a failure: the result is empty or false then.
class MiscRoutines {
 public:
  MiscRoutines(platform::Paths& paths, platform::EventLoop& loop) : paths_(paths), loop_(loop) {}

  /// A free name in the root of drive C that starts with "TW"; no such file exists on return.
  [[nodiscard]] std::string MakeTempFileName();

  /// Hidden files count, folders do not; wildcards work as in a directory search.
  [[nodiscard]] bool FileExists(std::string_view path) const { return paths_.Find(path); }

  [[nodiscard]] std::string FindOnPath(std::string_view fileName) const;
  [[nodiscard]] std::string GetShortPath(std::string_view path) const;
  [[nodiscard]] std::string GetFullPath(std::string_view path) const;

  /// A busy wait. Never returns for a delay above 0, and keeps the program responsive around the
  /// caller, whose flow ends here: the two times that are compared both stand still. Not to be
  /// given a clock.
  void WaitForMilliseconds(std::int32_t delay);

 private:
  platform::Paths& paths_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::core
