// A desktop entry, as far as it decides whether and how a session starts it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {

class DesktopEntry {
 public:
  /// Any bytes will do. Where a key stands twice, the last one holds.
  explicit DesktopEntry(const BoundedText& file);

  /// True if a session of `desktops` starts this entry. What is in doubt is taken for started; so
  /// is an entry whose end was not read and that says nothing else up to there.
  [[nodiscard]] bool IsStarted(const std::vector<std::string>& desktops) const;
  /// The program without which the entry is not started; empty if it names none.
  [[nodiscard]] std::string TryExec() const { return Text("TryExec"); }
  /// What would run: without field codes, and without quotes if it is a program alone.
  [[nodiscard]] std::string Command() const;

 private:
  [[nodiscard]] std::string Text(const std::string& key) const;
  [[nodiscard]] bool Is(const std::string& key, std::string_view value) const;
  [[nodiscard]] bool NamesOneOf(const std::string& key,
                                const std::vector<std::string>& desktops) const;

  std::map<std::string, std::string> values_;  // as written, of the keys that matter here
  bool whole_;
};

/// Words as one line: a word alone as it is, several with quotes where a blank or a quote needs
/// them.
[[nodiscard]] std::string JoinedWords(const std::vector<std::string>& words);

}  // namespace tallowin::platform::linux_host
