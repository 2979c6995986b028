// Standard output that never holds up the program.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

/// A stopped terminal or a reader who does not read must not stop the guard. What is not taken at
/// once waits, a text of any size alone and more up to `WaitingLimit`; beyond that it is left out,
/// and a line says so when the reader comes back. The descriptor stays a blocking one, since other
/// processes may share it.
class TerminalOutput {
 public:
  static constexpr std::size_t WaitingLimit = std::size_t{4} << 20U;

  TerminalOutput(LinuxEventLoop& loop, int descriptor);
  TerminalOutput(const TerminalOutput&) = delete;
  TerminalOutput& operator=(const TerminalOutput&) = delete;
  /// Gives the reader a moment to take what waits.
  ~TerminalOutput();

  void Write(std::string_view text);

 private:
  void Flush(int millisecondsToWait);
  /// False if nothing can be written any more.
  [[nodiscard]] bool WriteChunk();
  void TellWhatIsLeftOut();

  LinuxEventLoop& loop_;
  int descriptor_;
  std::size_t chunk_;
  std::string waiting_;
  std::size_t written_ = 0;  ///< of `waiting_`
  std::size_t leftOut_ = 0;
  std::unique_ptr<EventPoller::Watch> watch_;
};

}  // namespace tallowin::platform::linux_host
