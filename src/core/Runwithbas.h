// The shell's verbs on addresses, documents and command lines.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Shell.h"

namespace tallowin::core {

class Runwithbas {
 public:
  explicit Runwithbas(platform::Shell& shell) : shell_(shell) {}

  /// Opens `path`, or prints it. A show command of 0 would hide the window and is taken as 1, a
  /// normal one. The result is the shell's: above 32 for success.
  std::int32_t ShellOpen(std::string_view path, bool printIt, std::int32_t showCommand);

 private:
  platform::Shell& shell_;
};

}  // namespace tallowin::core
