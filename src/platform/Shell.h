// The desktop shell's verbs on files, addresses and command lines.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace tallowin::platform {

class Shell {
 public:
  virtual ~Shell() = default;

  /// Hands `file` to whatever the desktop opens it with, and does not wait for that. `file` is one
  /// argument, never a command to run and never an option: a text that starts with "-" is refused.
  /// The one exception is a command line that names the registry editor (regedit or regedit.exe,
  /// with or without a folder; /s; a path, the closing quote of which may be missing): the named
  /// file is imported in place, and that is finished when the call returns.
  /// The verb is "Open" or "Print". A result above 32 is success; 2 file not found, 5 access
  /// denied, 11 a registry file with a fault, 31 nothing to open it with, or a host that cannot
  /// print.
  virtual std::int32_t Execute(std::string_view verb, std::string_view file,
                               std::int32_t showCommand) = 0;

  /// Starts the program that the first word of `commandLine` names; words with blanks stand in
  /// double quotes, and nothing else in the line has a meaning. The program shares the standard
  /// streams of this one, which stands still until it ends, or for `limit` at most: it then runs
  /// on, and that is not told. False only if it could not be started.
  virtual bool RunAndWait(std::string_view commandLine, std::chrono::milliseconds limit) = 0;
};

}  // namespace tallowin::platform
