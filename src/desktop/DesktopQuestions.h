// Questions as message boxes, input boxes and file dialogs.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QString>

#include "forms/Questions.h"
#include "platform/EventLoop.h"

namespace tallowin::desktop {

/// The box waits in the program's own loop, so that the end of the program ends the question too.
/// Where Yes and No are offered, No is what Enter and Escape choose; keys that were meant for
/// something else are kept away by AnswerGuard.
class DesktopQuestions : public forms::Questions {
 public:
  explicit DesktopQuestions(platform::EventLoop& loop) : loop_(loop) { sinceWanted_.start(); }

  forms::Answer MsgBox(const std::string& text, forms::MessageBoxStyle style,
                       const std::string& title) override;
  std::string InputBox(const std::string& prompt, const std::string& title) override;
  std::string OpenFileName(const std::string& title) override;
  void PopupMenu(forms::Form& form, forms::MenuItem& menu) override;

 private:
  /// Whether the user accepted.
  bool Wait(QDialog& dialog);

  /// Whether the user is at work elsewhere. Right behind the start of the program or an answer the
  /// box is what the user waits for, though no window of ours need be there.
  [[nodiscard]] bool Intrudes() const;

  platform::EventLoop& loop_;
  QElapsedTimer sinceWanted_;
  QString folderOfFile_;  ///< in which a file was chosen last
};

}  // namespace tallowin::desktop
