// What the boxes of the general settings on Options do, by whomever they are changed.

#include "tallowin/Tallowin.h"

namespace tallowin {

using forms::CheckBox;

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

}  // namespace tallowin
