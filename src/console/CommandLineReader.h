// The lines of standard input, in their order: answers to questions, otherwise commands.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "console/ConsoleQuestions.h"
#include "forms/Form.h"
#include "platform/EventLoop.h"
#include "platform/Terminal.h"

namespace tallowin::console {

/// A command's handler lets the loop run, so that later lines arrive in its middle. They wait until
/// it has ended, asks something or opens a modal form: a script may send a command and the answer
/// to its question at once, and the answer is still there when the question comes. What comes while
/// a modal form is open is run there, in the middle of the command that has opened it.
class CommandLineReader {
 public:
  CommandLineReader(platform::Terminal& terminal, platform::EventLoop& loop,
                    ConsoleQuestions& questions, std::function<void(const std::string&)> command);
  CommandLineReader(const CommandLineReader&) = delete;
  CommandLineReader& operator=(const CommandLineReader&) = delete;

  void Start(const forms::Forms& forms);

  /// Runs `handler` as if it were a command: lines wait until it has ended or asks something.
  void RunAsCommand(const std::function<void()>& handler);

 private:
  void GiveAnswers();
  void Continue();
  [[nodiscard]] bool MayRun() const;
  [[nodiscard]] const forms::Form* OpenModal() const;
  std::string TakeLine();

  platform::Terminal& terminal_;
  platform::EventLoop& loop_;
  ConsoleQuestions& questions_;
  std::function<void(const std::string&)> command_;
  std::deque<std::string> waiting_;
  const forms::Forms* forms_ = nullptr;
  std::vector<forms::Observation> observations_;
  bool commandRuns_ = false;
  const forms::Form* commandsModal_ = nullptr;  ///< which was open when the running command began
  bool ended_ = false;
};

}  // namespace tallowin::console
