// The commands of the terminal. They work on any form and know none.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "forms/Form.h"

namespace tallowin::console {

class Commands {
 public:
  Commands(const forms::Forms& forms, std::function<void()> quit);

  /// Does what the line says and gives what is to be printed: whole lines that cannot steer a
  /// terminal, or nothing. What cannot be done gives one line that starts with "error: ". Errors of
  /// the handlers that a command starts travel to the caller.
  [[nodiscard]] std::string Execute(std::string_view line);

 private:
  struct Command {
    std::string_view name;
    std::string_view arguments;
    std::string_view purpose;
    std::string (Commands::*run)(std::string_view arguments);
  };
  static const Command kCommands[];

  std::string Help(std::string_view arguments);
  std::string ListForms(std::string_view arguments);
  std::string Show(std::string_view arguments);
  std::string Get(std::string_view arguments);
  std::string Set(std::string_view arguments);
  std::string Click(std::string_view arguments);
  std::string Select(std::string_view arguments);
  std::string Close(std::string_view arguments);
  std::string Quit(std::string_view arguments);

  struct FoundForm {
    forms::Form* form;
    std::string failure;
  };
  struct FoundControl {
    forms::Control* control;
    std::string failure;
  };
  [[nodiscard]] FoundForm FindForm(std::string_view name) const;
  /// By FORM.CONTROL.
  [[nodiscard]] FoundControl FindControl(std::string_view name) const;
  /// The same for one that the user is to act on: a modal form keeps others away.
  [[nodiscard]] FoundControl FindControlToUse(std::string_view name) const;

  const forms::Forms& forms_;
  std::function<void()> quit_;
};

}  // namespace tallowin::console
