// The front end for a terminal: the status log out, commands and answers in.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "console/CommandLineReader.h"
#include "console/Commands.h"
#include "console/ConsoleQuestions.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "platform/EventLoop.h"
#include "platform/Terminal.h"

namespace tallowin::console {

class Console {
 public:
  Console(platform::Terminal& terminal, platform::EventLoop& loop);

  /// What the program asks its user. May be used before Attach, since a program needs it to come
  /// into being.
  [[nodiscard]] forms::Questions& Questions() { return questions_; }

  /// Starts to print `status` and to take commands on `forms`. `quit` ends the program. All must
  /// outlive the last event. To be called once.
  void Attach(const forms::Forms& forms, forms::TextBox& status, std::function<void()> quit);

  /// Runs the start-up of the program. Commands that come meanwhile wait for its end; its questions
  /// are answered.
  void RunStartUp(const std::function<void()>& start) { reader_.RunAsCommand(start); }

 private:
  void PrintStatus(const forms::TextBox& status, const forms::Change& change);

  platform::Terminal& terminal_;
  ConsoleQuestions questions_;
  std::optional<Commands> commands_;
  CommandLineReader reader_;
  forms::Observation observation_;
};

}  // namespace tallowin::console
