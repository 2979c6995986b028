// What the menu of MainForm and the boxes of Options do.

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

  mainForm_.ExeInfectChk.OnClick = [this] { infectionCheck_.ExeInfectChk_Click(); };

  form1_.enablemnu.OnClick = [this] { portListeners_.ActivatePortSentry(); };
  form1_.disableprotectmnu.OnClick = [this] { portListeners_.DeactivatePortSentry(); };

  // Minimised, the window hides itself. The close box does the same: the guard goes on, and
  // "E&xit Tallowin" is the way to end it.
  mainForm_.OnResize = [this] {
    if (mainForm_.State() == forms::WindowState::Minimised) mainForm_.Hide();
  };
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

void Tallowin::WireOptions() {
  options_.VerboseChk.OnClick = [this] {
    const int value = options_.VerboseChk.Value();
    if (value == CheckBox::Checked) log_.LogStatus("Verbose Mode Enabled", true);
    if (value == CheckBox::Unchecked) log_.LogStatus("Verbose Mode Disabled", true);
  };
  options_.OnTopChk.OnClick = [this] {
    const int value = options_.OnTopChk.Value();
    if (value == CheckBox::Checked) log_.LogStatus("Always On Top Enabled", false);
    if (value == CheckBox::Unchecked) log_.LogStatus("Always On Top Disabled", false);
  };
  options_.PortChk.OnClick = [this] { PortChk_Click(); };
  options_.ActiveMonChk.OnClick = [this] { ActiveMonChk_Click(); };
  options_.IdentDChk.OnClick = [this] { identD_.IdentDChk_Click(); };
}

void Tallowin::PortChk_Click() {
  const int value = options_.PortChk.Value();
  if (value == CheckBox::Greyed) return;
  // One line for both ways of the switch.
  log_.LogStatus("Port Sentry Disactivated", false);
  mainForm_.portsntmnu.SetChecked(value == CheckBox::Checked);
  UpdateSentry("port");
}

void Tallowin::ActiveMonChk_Click() {
  const int value = options_.ActiveMonChk.Value();
  if (value == CheckBox::Greyed) return;
  const bool on = value == CheckBox::Checked;
  log_.LogStatus(on ? "Trojan Sentry Enabled" : "Trojan Sentry Disabled", false);
  mainForm_.ActiveMonMnu.SetChecked(on);
  UpdateSentry("trojan");
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
