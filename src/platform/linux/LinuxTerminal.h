// Standard input and output.
#pragma once

#include <unistd.h>

#include <memory>

#include "platform/Terminal.h"
#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/TerminalOutput.h"

namespace tallowin::platform::linux_host {

/// The descriptors stay those of the caller, and are not switched to non-blocking, since other
/// processes may share them. The input may be a terminal, a pipe, a socket or a file.
class LinuxTerminal final : public Terminal {
 public:
  explicit LinuxTerminal(LinuxEventLoop& loop, int input = STDIN_FILENO,
                         int output = STDOUT_FILENO);
  ~LinuxTerminal() override;

  void ReadLines(std::function<void(std::string line)> line, std::function<void()> ended) override;
  void Write(std::string_view text) override;

 private:
  class Input;
  LinuxEventLoop& loop_;
  int inputDescriptor_;
  TerminalOutput output_;
  std::shared_ptr<Input> input_;
};

}  // namespace tallowin::platform::linux_host
