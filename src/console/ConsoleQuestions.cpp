#include "console/ConsoleQuestions.h"

#include <algorithm>
#include <cctype>

#include "console/ControlText.h"
#include "console/Escapes.h"
#include "forms/PlainText.h"

namespace tallowin::console {

namespace {

std::string Word(std::string_view line) {
  std::string word;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isspace(byte) == 0) word += static_cast<char>(std::tolower(byte));
  }
  return word;
}

}  // namespace

std::string_view ConsoleQuestions::PossibleAnswers(Kind kind) {
  switch (kind) {
    case Kind::Ok:
      return "ok\n";
    case Kind::YesNo:
      return "yes / no\n";
    case Kind::Text:
      return "a text / cancel\n";
    case Kind::File:
      return "the name of a file / cancel\n";
  }
  return {};
}

std::string ConsoleQuestions::AnswerOfNobody(Kind kind) {
  if (kind == Kind::Ok) return "ok";
  return kind == Kind::YesNo ? "no" : "";
}

std::optional<std::string> ConsoleQuestions::ParseAnswer(std::string_view line, Kind kind) {
  const std::string word = Word(line);
  switch (kind) {
    case Kind::Ok:
      return word == "ok" ? std::optional(word) : std::nullopt;
    case Kind::YesNo:
      if (word == "yes" || word == "y") return "yes";
      if (word == "no" || word == "n") return "no";
      return std::nullopt;
    case Kind::Text:
    case Kind::File:
      break;
  }
  return word == "cancel" ? std::string() : std::string(line);
}

forms::Answer ConsoleQuestions::MsgBox(const std::string& text, forms::MessageBoxStyle style,
                                       const std::string& title) {
  if (!forms::AsksYesNo(style)) {
    Ask(title, text, Kind::Ok);
    return forms::Answer::Ok;
  }
  return Ask(title, text, Kind::YesNo) == "yes" ? forms::Answer::Yes : forms::Answer::No;
}

std::string ConsoleQuestions::InputBox(const std::string& prompt, const std::string& title) {
  return Ask(title, prompt, Kind::Text);
}

std::string ConsoleQuestions::OpenFileName(const std::string& title) {
  return Ask(title, {}, Kind::File);
}

void ConsoleQuestions::PopupMenu(forms::Form& form, forms::MenuItem& menu) {
  std::string lines;
  for (const auto* item : form.ItemsOf(&menu)) {
    if (item->IsSeparator() || !item->Visible()) continue;
    lines += form.Name() + "." + DescribeControl(*item) + "\n";
  }
  terminal_.Write(lines);
}

std::string ConsoleQuestions::Ask(const std::string& title, const std::string& text, Kind kind) {
  std::string block = "[?] " + (title.empty() ? "Tallowin" : Escape(title)) + "\n";
  if (!text.empty()) block += forms::PlainText(text) + "\n";
  Question question{block.append(PossibleAnswers(kind)), kind};
  terminal_.Write(question.block);
  if (endOfInput_) return AnswerOfNobody(kind);

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
  const Kind kind = open_.back()->kind;
  if (auto answer = ParseAnswer(line, kind)) {
    Give(*std::move(answer));
    if (IsOpen()) terminal_.Write(open_.back()->block);
  } else {
    terminal_.Write("error: the answers are: " + std::string(PossibleAnswers(kind)));
  }
}

void ConsoleQuestions::EndOfInput() {
  endOfInput_ = true;
  while (IsOpen()) Give(AnswerOfNobody(open_.back()->kind));
}

void ConsoleQuestions::Give(std::string answer) {
  open_.back()->answer = std::move(answer);
  open_.pop_back();
}

}  // namespace tallowin::console
