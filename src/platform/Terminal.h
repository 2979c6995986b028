// The terminal of a program that has one: lines in, text out.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallowin::platform {

class Terminal {
 public:
  virtual ~Terminal() = default;

  /// Starts to deliver the lines of standard input as events, without their line end (LF or CR LF).
  /// `ended` is raised once, behind the last line. A line longer than 1 MiB is cut there. A line
  /// that comes while the handler of the line before it still runs is delivered all the same, in a
  /// nested pass of the loop.
  virtual void ReadLines(std::function<void(std::string line)> line,
                         std::function<void()> ended) = 0;

  /// Writes the bytes to standard output, at once where the reader takes them; never waits for a
  /// reader. The caller sees to it that they cannot steer the terminal. Failures are ignored:
  /// nobody is left to tell.
  virtual void Write(std::string_view text) = 0;
};

}  // namespace tallowin::platform
