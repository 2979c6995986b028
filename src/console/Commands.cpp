#include "console/Commands.h"

#include <algorithm>
#include <charconv>

#include "console/ControlText.h"
#include "console/Escapes.h"
#include "console/UserActions.h"

namespace tallowin::console {

namespace {

std::string Error(const std::string& message) { return "error: " + message + "\n"; }

/// An action's outcome as what is to be printed.
std::string Outcome(const std::string& failure) {
  return failure.empty() ? std::string() : Error(failure);
}

std::string Quoted(std::string_view foreign) {
  constexpr std::size_t kShown = 60;
  return "\"" + Escape(FirstCharacters(foreign, kShown)) + "\"";
}

/// Takes the first word off the text, and one blank behind it.
std::string_view TakeWord(std::string_view& text) {
  const auto word = text.substr(0, text.find(' '));
  text.remove_prefix(std::min(text.size(), word.size() + 1));
  return word;
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::string BehindModal(const forms::Form& modal) {
  return modal.Name() + " is open, and nothing else can be used until it is closed";
}

}  // namespace

const Commands::Command Commands::kCommands[] = {
    {"help", "", "this list", &Commands::Help},
    {"forms", "", "the forms that there are", &Commands::ListForms},
    {"show", "FORM", "a form and its controls: name, kind, value, state, caption", &Commands::Show},
    {"get", "FORM.CONTROL", "the value of a control", &Commands::Get},
    {"set", "FORM.CONTROL VALUE",
     "change it as a user would, 1 or 0 for a box to tick; \\n \\r \\t \\\\ \\x1b are escapes",
     &Commands::Set},
    {"click", "FORM.CONTROL [KEY]", "press a button, by its KEY on a tool bar; choose a menu item",
     &Commands::Click},
    {"click", "tray double|right", "the icon: bring the window back; list the services menu",
     &Commands::Click},
    {"select", "FORM.CONTROL N", "choose entry N of a list, counted from 0", &Commands::Select},
    {"close", "FORM", "the close box of its window", &Commands::Close},
    {"quit", "", "end the program, once the commands before it are done", &Commands::Quit},
};

Commands::Commands(const forms::Forms& forms, std::function<void()> quit)
    : forms_(forms), quit_(std::move(quit)) {}

std::string Commands::Execute(std::string_view line) {
  const auto first = line.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  std::string_view arguments = line.substr(first);
  const auto name = TakeWord(arguments);
  for (const auto& command : kCommands) {
    if (command.name != name) continue;
    if (command.arguments.empty() && !Trimmed(arguments).empty()) {
      return Error(std::string(name) + " takes nothing behind it");
    }
    if (!command.arguments.empty() && Trimmed(arguments).empty()) {
      return Error(std::string(name) + " wants " + std::string(command.arguments));
    }
    return (this->*command.run)(arguments);
  }
  return Error("there is no command " + Quoted(name) + "; \"help\" lists them");
}

std::string Commands::Help(std::string_view /*arguments*/) {
  constexpr std::size_t kPurposeColumn = 28;
  std::string text;
  for (const auto& command : kCommands) {
    std::string line(command.name);
    line.append(" ").append(command.arguments);
    line.resize(std::max(line.size() + 1, kPurposeColumn), ' ');
    text.append(line).append(command.purpose).append("\n");
  }
  return text + "A block that starts with [?] is a question: the next line answers it.\n";
}

std::string Commands::ListForms(std::string_view /*arguments*/) {
  std::string text;
  for (const auto* form : forms_.All()) text += DescribeControl(*form) + "\n";
  return text;
}

std::string Commands::Show(std::string_view arguments) {
  const auto [form, failure] = FindForm(Trimmed(arguments));
  return form == nullptr ? Error(failure) : DescribeForm(*form);
}

std::string Commands::Get(std::string_view arguments) {
  const auto [control, failure] = FindControl(Trimmed(arguments));
  return control == nullptr ? Error(failure) : Escape(control->ValueText()) + "\n";
}

std::string Commands::Set(std::string_view arguments) {
  arguments.remove_prefix(arguments.find_first_not_of(' '));
  const auto name = TakeWord(arguments);
  const auto [control, failure] = FindControlToUse(name);
  if (control == nullptr) return Error(failure);
  const auto value = Unescape(arguments);
  if (!value) {
    return Error("a backslash begins \\n, \\r, \\t, \\\\ or \\x with two hexadecimal digits");
  }
  return Outcome(SetValue(*control, *value));
}

std::string Commands::Click(std::string_view arguments) {
  arguments = Trimmed(arguments);
  const auto name = TakeWord(arguments);
  if (name == "tray") return Outcome(ClickOnTray(forms_.TaskBar(), Trimmed(arguments)));
  const auto [control, failure] = FindControlToUse(name);
  return control == nullptr ? Error(failure)
                            : Outcome(console::Click(*control, Trimmed(arguments)));
}

std::string Commands::Select(std::string_view arguments) {
  arguments = Trimmed(arguments);
  const auto name = TakeWord(arguments);
  const auto [control, failure] = FindControlToUse(name);
  if (control == nullptr) return Error(failure);
  const auto number = Trimmed(arguments);
  std::size_t index = 0;
  const auto* numberEnd = number.data() + number.size();
  const auto [end, wrong] = std::from_chars(number.data(), numberEnd, index);
  if (wrong != std::errc() || end != numberEnd) {
    return Error(Quoted(number) + " is no number of an entry; they are counted from 0");
  }
  return Outcome(console::Select(*control, index));
}

std::string Commands::Close(std::string_view arguments) {
  const auto [form, failure] = FindForm(Trimmed(arguments));
  if (form == nullptr) return Error(failure);
  if (!form->Visible()) return Error(form->Name() + " is not open");
  const auto* modal = forms_.OpenModal();
  if (modal != nullptr && modal != form) return Error(BehindModal(*modal));
  form->PressCloseBox();
  return {};
}

std::string Commands::Quit(std::string_view /*arguments*/) {
  quit_();
  return {};
}

Commands::FoundForm Commands::FindForm(std::string_view name) const {
  if (auto* form = forms_.Find(name)) return {form, {}};
  std::string failure = "there is no form " + Quoted(name) + "; the forms are";
  for (const auto* form : forms_.All()) failure += " " + form->Name();
  return {nullptr, failure};
}

Commands::FoundControl Commands::FindControl(std::string_view name) const {
  const auto dot = name.find('.');
  if (dot == std::string_view::npos) {
    return {nullptr, Quoted(name) + " lacks a dot: FORM.CONTROL is wanted"};
  }
  const auto [form, failure] = FindForm(name.substr(0, dot));
  if (form == nullptr) return {nullptr, failure};
  const auto controlName = name.substr(dot + 1);
  if (auto* control = form->Find(controlName)) return {control, {}};
  return {nullptr, form->Name() + " has no control " + Quoted(controlName) + "; \"show " +
                       form->Name() + "\" lists them"};
}

Commands::FoundControl Commands::FindControlToUse(std::string_view name) const {
  auto found = FindControl(name);
  const auto* modal = forms_.OpenModal();
  if (modal == nullptr || modal->Find(name.substr(name.find('.') + 1)) == found.control) {
    return found;
  }
  return {nullptr, BehindModal(*modal)};
}

}  // namespace tallowin::console
