#include "console/Console.h"

#include "forms/PlainText.h"

namespace tallowin::console {

Console::Console(platform::Terminal& terminal, platform::EventLoop& loop)
    : terminal_(terminal),
      questions_(terminal, loop),
      reader_(terminal, loop, questions_,
              [this](const std::string& line) { terminal_.Write(commands_->Execute(line)); }) {}

void Console::Attach(const forms::Forms& forms, forms::TextBox& status,
                     std::function<void()> quit) {
  commands_.emplace(forms, std::move(quit));
  observation_ =
      status.Observe([this, &status](const auto& change) { PrintStatus(status, change); });
  reader_.Start(forms);
}

void Console::PrintStatus(const forms::TextBox& status, const forms::Change& change) {
  std::string_view added;
  switch (change.property) {
    case forms::Property::Everything:
    case forms::Property::Text:
      added = status.Text();
      break;
    case forms::Property::AppendedText:
      added = change.addition;
      break;
    default:
      break;
  }
  if (added.empty()) return;
  std::string lines = forms::PlainText(added);
  if (lines.back() != '\n') lines += '\n';
  terminal_.Write(lines);
}

}  // namespace tallowin::console
