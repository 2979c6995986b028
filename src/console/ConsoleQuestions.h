// Message boxes in a terminal: printed as a block, answered by the next input line.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/Questions.h"
#include "platform/EventLoop.h"
#include "platform/Terminal.h"

namespace tallowin::console {

/// The newest open question is answered first; the one below it is then printed again.
class ConsoleQuestions : public forms::Questions {
 public:
  ConsoleQuestions(platform::Terminal& terminal, platform::EventLoop& loop)
      : terminal_(terminal), loop_(loop) {}

  forms::Answer MsgBox(const std::string& text, forms::MessageBoxStyle style,
                       const std::string& title) override;

  [[nodiscard]] bool IsOpen() const { return !open_.empty(); }

  /// Answers the newest open question. A line that is no answer gets the possible answers shown
  /// again.
  void Answer(std::string_view line);

  /// Nobody is left to answer: every open question and every later one is No or Ok at once.
  void EndOfInput();

  /// Runs when a question has been asked, before it waits: answers may have come already.
  std::function<void()> OnAsked;

 private:
  struct Question {
    std::string block;
    bool yesNo;
    std::optional<forms::Answer> answer = {};
  };
  void Give(forms::Answer answer);

  platform::Terminal& terminal_;
  platform::EventLoop& loop_;
  /// Not answered yet, the newest last.
  std::vector<Question*> open_;
  bool endOfInput_ = false;
};

}  // namespace tallowin::console
