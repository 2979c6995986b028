// What the menu of MainForm does.

#include "forms/Questions.h"
#include "tallowin/Tallowin.h"

namespace tallowin {

using forms::Answer;
using forms::CheckBox;
using forms::MessageBoxStyle;

void Tallowin::WireMenu() {
  WireServiceItem(mainForm_.portsntmnu, options_.PortChk);
  WireServiceItem(mainForm_.ActiveMonMnu, options_.ActiveMonChk);
  WireServiceItem(mainForm_.identmnu, options_.IdentDChk);
  mainForm_.clearlog.OnClick = [this] { log_.ClearLog(); };
  mainForm_.savelog.OnClick = [this] {
    SaveLog();
    questions_.MsgBox("Log file has been saved", MessageBoxStyle::Plain, module_.ProductTitle);
  };
  mainForm_.Removelogs.OnClick = [this] { AskToRemoveLogs(); };
  mainForm_.exittwmnu.OnClick = [this] { AskToExit(); };

  mainForm_.stringextractmnu.OnClick = [this] { fileAnalysis_.Show(); };
  mainForm_.prefsmnu.OnClick = [this] { optionsDialog_.ShowModal(); };
  mainForm_.ExeInfectChk.OnClick = [this] { infectionCheck_.ExeInfectChk_Click(); };
  mainForm_.procman.OnClick = [this] { processManager_.Open(); };
  mainForm_.inetstatsmnu.OnClick = [this] { internetStatistics_.Open(); };

  form1_.enablemnu.OnClick = [this] { portListeners_.ActivatePortSentry(); };
  form1_.disableprotectmnu.OnClick = [this] { portListeners_.DeactivatePortSentry(); };

  // Minimised, the window hides itself. The close box does the same: the guard goes on, and
  // "E&xit Tallowin" is the way to end it.
  mainForm_.OnResize = [this] {
    if (mainForm_.State() == forms::WindowState::Minimised) mainForm_.Hide();
  };
  // However it comes up again, "Always On Top" is over: RestoreMainWindow tells why.
  mainForm_.OnActivate = [this] { core::ClearTopMost(mainForm_); };
  mainForm_.OnCloseBox = [this] { mainForm_.SetState(forms::WindowState::Minimised); };
}

void Tallowin::WireServiceItem(forms::MenuItem& item, CheckBox& box) {
  // The item only sets the box; the box's handler is what switches the service.
  item.OnClick = [this, &item, &box] {
    item.SetChecked(!item.Checked());
    box.SetValue(item.Checked() ? CheckBox::Checked : CheckBox::Unchecked);
    settings_.SaveSettings();
  };
}

void Tallowin::AskToRemoveLogs() {
  constexpr const char* kTitle = "Clear All Logs";
  const Answer answer = questions_.MsgBox(
      "Are you sure you wish to remove all existing logs (will not clear the currently displayed "
      "log)?",
      MessageBoxStyle::YesNoQuestion, kTitle);
  if (answer != Answer::Yes) return;
  log_.RemoveLogFiles();
  questions_.MsgBox("Logs successfully removed", MessageBoxStyle::Plain, kTitle);
}

void Tallowin::AskToExit() {
  const Answer answer = questions_.MsgBox(
      "Are you sure you want to quit? Your system may be vunerable to malicious users.",
      MessageBoxStyle::YesNoQuestion, "Are you sure?");
  if (answer == Answer::Yes) Quit();
}

}  // namespace tallowin
