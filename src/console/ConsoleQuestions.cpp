#include "console/ConsoleQuestions.h"

#include <algorithm>
#include <cctype>

#include "console/Escapes.h"
#include "forms/PlainText.h"

namespace tallowin::console {

namespace {

std::string_view PossibleAnswers(bool yesNo) { return yesNo ? "yes / no\n" : "ok\n"; }

forms::Answer AnswerOfNobody(bool yesNo) { return yesNo ? forms::Answer::No : forms::Answer::Ok; }

std::string Block(const std::string& title, const std::string& text, bool yesNo) {
  std::string block = "[?] " + (title.empty() ? "Tallowin" : Escape(title)) + "\n";
  if (!text.empty()) block += forms::PlainText(text) + "\n";
  return block.append(PossibleAnswers(yesNo));
}

std::optional<forms::Answer> ParseAnswer(std::string_view line, bool yesNo) {
  std::string word;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isspace(byte) == 0) word += static_cast<char>(std::tolower(byte));
  }
  if (!yesNo) return word == "ok" ? std::optional(forms::Answer::Ok) : std::nullopt;
  if (word == "yes" || word == "y") return forms::Answer::Yes;
  if (word == "no" || word == "n") return forms::Answer::No;
  return std::nullopt;
}

}  // namespace

forms::Answer ConsoleQuestions::MsgBox(const std::string& text, forms::MessageBoxStyle style,
                                       const std::string& title) {
  const bool yesNo = forms::AsksYesNo(style);
  Question question{Block(title, text, yesNo), yesNo};
  terminal_.Write(question.block);
  if (endOfInput_) return AnswerOfNobody(yesNo);

  struct Opened {
    std::vector<Question*>& open;
    Question* question;
    // An answered question is no longer there; one that the end of the program leaves still is.
    ~Opened() { std::erase(open, question); }
  } const opened{open_, &question};
  open_.push_back(&question);
  if (OnAsked) OnAsked();
  loop_.RunUntil([&] { return question.answer.has_value(); });
  return *question.answer;
}

void ConsoleQuestions::Answer(std::string_view line) {
  const bool yesNo = open_.back()->yesNo;
  if (const auto answer = ParseAnswer(line, yesNo)) {
    Give(*answer);
    if (IsOpen()) terminal_.Write(open_.back()->block);
  } else {
    terminal_.Write(PossibleAnswers(yesNo));
  }
}

void ConsoleQuestions::EndOfInput() {
  endOfInput_ = true;
  while (IsOpen()) Give(AnswerOfNobody(open_.back()->yesNo));
}

void ConsoleQuestions::Give(forms::Answer answer) {
  open_.back()->answer = answer;
  open_.pop_back();
}

}  // namespace tallowin::console
