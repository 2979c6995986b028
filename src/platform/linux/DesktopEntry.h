// A desktop entry, as far as it decides whether and how a session starts it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {

/// Sessions do not read a broken file alike: of a key that stands twice they take the first or the
/// last, a group that stands twice is one or two, a backslash at the end of a line joins the next
/// one to it or does not. So an entry has several readings.
class DesktopEntry {
 public:
  using ProgramTest = std::function<bool(const std::string& program)>;

  /// Any bytes will do.
  explicit DesktopEntry(const BoundedText& file);

  /// True if a session of `desktops` starts this entry under any reading. An entry whose end was
  /// not read is taken for started. `isProgram` is asked about what the entry needs to be there.
  [[nodiscard]] bool IsStarted(const std::vector<std::string>& desktops,
                               const ProgramTest& isProgram) const;
  /// What would run: without field codes, and without quotes if it is a program alone. Parted by
  /// "; " where the readings differ.
  [[nodiscard]] std::string Command() const;

 private:
  using Values = std::map<std::string, std::string>;  // as written, of the keys that matter here

  std::vector<Values> readings_;
  bool whole_;
};

/// Words as one line: a word alone as it is, several with quotes where a blank or a quote needs
/// them.
[[nodiscard]] std::string JoinedWords(const std::vector<std::string>& words);

}  // namespace tallowin::platform::linux_host
