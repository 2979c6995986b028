#include "console/CommandLineReader.h"

#include <utility>

namespace tallowin::console {

CommandLineReader::CommandLineReader(platform::Terminal& terminal, platform::EventLoop& loop,
                                     ConsoleQuestions& questions,
                                     std::function<void(const std::string&)> command)
    : terminal_(terminal), loop_(loop), questions_(questions), command_(std::move(command)) {
  questions_.OnAsked = [this] { GiveAnswers(); };
}

void CommandLineReader::Start(const forms::Forms& forms) {
  forms_ = &forms;
  for (forms::Form* form : forms.All()) {
    observations_.push_back(form->Observe([this, form](const forms::Change& change) {
      // What waits is run when the form stands, and not in the middle of its coming up.
      const bool opens = change.property == forms::Property::Visible && form->Modal();
      if (opens) loop_.Post([this] { Continue(); });
    }));
  }
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
  if (!waiting_.empty() && MayRun()) {
    RunAsCommand([this] { command_(TakeLine()); });
  }
}

bool CommandLineReader::MayRun() const {
  if (!commandRuns_) return true;
  return OpenModal() != nullptr && OpenModal() != commandsModal_;
}

const forms::Form* CommandLineReader::OpenModal() const {
  return forms_ == nullptr ? nullptr : forms_->OpenModal();
}

void CommandLineReader::RunAsCommand(const std::function<void()>& handler) {
  struct Running {
    explicit Running(CommandLineReader& owner)
        : reader(owner),
          outerRuns(std::exchange(owner.commandRuns_, true)),
          outerModal(std::exchange(owner.commandsModal_, owner.OpenModal())) {}
    // What waits behind the command runs as an event of its own, so that it runs even if an error
    // leaves this one.
    ~Running() {
      reader.commandRuns_ = outerRuns;
      reader.commandsModal_ = outerModal;
      if (!reader.waiting_.empty()) reader.loop_.Post([&owner = reader] { owner.Continue(); });
    }
    CommandLineReader& reader;
    bool outerRuns;
    const forms::Form* outerModal;
  } const running(*this);
  handler();
}

std::string CommandLineReader::TakeLine() {
  std::string line = std::move(waiting_.front());
  waiting_.pop_front();
  return line;
}

}  // namespace tallowin::console
