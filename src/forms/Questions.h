// What the system asks its user; a front end answers, or a test.
#pragma once

#include <string>

namespace tallowin::forms {

class Form;
class MenuItem;

/// Sums of a set of buttons and an icon.
enum class MessageBoxStyle : int {
  Plain = 0,
  Stop = 16,
  YesNoQuestion = 36,
  Exclamation = 48,
  Information = 64,
  YesNoInformation = 68,
};

[[nodiscard]] constexpr bool AsksYesNo(MessageBoxStyle style) {
  return style == MessageBoxStyle::YesNoQuestion || style == MessageBoxStyle::YesNoInformation;
}

enum class Answer : int { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

class Questions {
 public:
  virtual ~Questions() = default;

  /// Shows the text, as plain text, until it is answered; the message loop runs meanwhile. Closing
  /// the box or Escape is No where Yes and No are offered, otherwise Ok.
  virtual Answer MsgBox(const std::string& text, MessageBoxStyle style,
                        const std::string& title) = 0;

  /// Asks for one line of text. Empty if the user cancels.
  virtual std::string InputBox(const std::string& prompt, const std::string& title) = 0;

  /// Lets the user choose a file that is there. Empty if the user cancels.
  virtual std::string OpenFileName(const std::string& title) = 0;

  /// Shows the items of a menu of `form` where the mouse is, with or without a window of the
  /// program on the screen. Returns when the menu is closed; by then the handler of the item that
  /// the user chose has run. The message loop runs meanwhile.
  virtual void PopupMenu(Form& form, MenuItem& menu) = 0;
};

}  // namespace tallowin::forms
