#include "console/CommandLineReader.h"

namespace tallowin::console {

CommandLineReader::CommandLineReader(platform::Terminal& terminal, platform::EventLoop& loop,
                                     ConsoleQuestions& questions,
                                     std::function<void(const std::string&)> command)
    : terminal_(terminal), loop_(loop), questions_(questions), command_(std::move(command)) {
  questions_.OnAsked = [this] { GiveAnswers(); };
}

void CommandLineReader::Start() {
  terminal_.ReadLines(
      [this](std::string line) {
        waiting_.push_back(std::move(line));
        Continue();
      },
      [this] {
        ended_ = true;
        Continue();
      });
}

void CommandLineReader::GiveAnswers() {
  while (!waiting_.empty() && questions_.IsOpen()) questions_.Answer(TakeLine());
  if (waiting_.empty() && ended_) questions_.EndOfInput();
}

void CommandLineReader::Continue() {
  GiveAnswers();
  if (!waiting_.empty() && !commandRuns_) {
    RunAsCommand([this] { command_(TakeLine()); });
  }
}

void CommandLineReader::RunAsCommand(const std::function<void()>& handler) {
  struct Running {
    explicit Running(CommandLineReader& owner) : reader(owner) { reader.commandRuns_ = true; }
    // What waits behind the command runs as an event of its own, so that it runs even if an error
    // leaves this one.
    ~Running() {
      reader.commandRuns_ = false;
      if (!reader.waiting_.empty()) reader.loop_.Post([&owner = reader] { owner.Continue(); });
    }
    CommandLineReader& reader;
  } const running(*this);
  handler();
}

std::string CommandLineReader::TakeLine() {
  std::string line = std::move(waiting_.front());
  waiting_.pop_front();
  return line;
}

}  // namespace tallowin::console
