#include "tallowin/CommandLine.h"

#include <utility>

#include "core/MiscRoutines.h"
#include "platform/EventLoop.h"
#include "platform/Shell.h"
#include "tallowin/Tallowin.h"

namespace tallowin {

void GetNxtWord(std::string& line, std::string& word) {
  for (;;) {
    const auto blank = line.find(' ');
    if (blank == std::string::npos) {
      word = std::exchange(line, {});
      return;
    }
    word = line.substr(0, blank);
    line.erase(0, blank + 1);
    if (!word.empty()) return;
  }
}

void Tallowin::CheckArguments() {
  // Switches are found anywhere in the text, so they need nothing between them.
  const std::string arguments = core::LowerCase(commandLine_);
  const auto given = [&](const char* text) { return arguments.find(text) != std::string::npos; };

  // Through the items of the menu, so that the services stay off at the next start.
  if (given("-disablemon") && mainForm_.ActiveMonMnu.Checked()) mainForm_.ActiveMonMnu.Click();
  if (given("-disablesentry") && mainForm_.portsntmnu.Checked()) mainForm_.portsntmnu.Click();
  if (given("-?")) {
    questions_.MsgBox(mainForm_.ArgHelp.Text(), forms::MessageBoxStyle::Information,
                      "Command Line Arguments");
    host_.loop.End(0);
  }
  if (given("-restored")) RestoreMainWindow();
}

void Tallowin::ShellAndWait(std::string_view commandLine) {
  constexpr std::chrono::milliseconds kLimit{30000};
  (void)host_.shell.RunAndWait(commandLine, kLimit);
}

void Tallowin::RestoreMainWindow() {
  if (frmAbout_.Visible() || options_.Visible()) return;
  mainForm_.SetState(forms::WindowState::Normal);
  mainForm_.Show();
  // Topmost for a moment brings the window to the front. It also ends "Always On Top" until the
  // settings are loaded again: a window that was asked for must not cover all others from then on.
  core::SetTopMost(mainForm_);
  core::ClearTopMost(mainForm_);
}

}  // namespace tallowin
