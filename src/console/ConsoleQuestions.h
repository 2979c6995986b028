// Message boxes, input boxes and file dialogs in a terminal: printed as a block, answered by the
// next input line.
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
  std::string InputBox(const std::string& prompt, const std::string& title) override;
  std::string OpenFileName(const std::string& title) override;

  /// Prints the items, each as `click` takes it and `show` tells it. There is nothing to wait for:
  /// any of them can be chosen at any time.
  void PopupMenu(forms::Form& form, forms::MenuItem& menu) override;

  [[nodiscard]] bool IsOpen() const { return !open_.empty(); }

  /// Answers the newest open question. A line that is no answer gets the possible answers shown
  /// again.
  void Answer(std::string_view line);

  /// Nobody is left to answer: every open question and every later one is No or Ok at once.
  void EndOfInput();

  /// Runs when a question has been asked, before it waits: answers may have come already.
  std::function<void()> OnAsked;

 private:
  enum class Kind { Ok, YesNo, Text, File };
  struct Question {
    std::string block;
    Kind kind;
    /// "ok", "yes", "no" or the text.
    std::optional<std::string> answer = {};
  };
  static std::string_view PossibleAnswers(Kind kind);
  static std::string AnswerOfNobody(Kind kind);
  static std::optional<std::string> ParseAnswer(std::string_view line, Kind kind);
  std::string Ask(const std::string& title, const std::string& text, Kind kind);
  void Give(std::string answer);

  platform::Terminal& terminal_;
  platform::EventLoop& loop_;
  /// Not answered yet, the newest last.
  std::vector<Question*> open_;
  bool endOfInput_ = false;
};

}  // namespace tallowin::console
