// Keeping the clock right: the box of Options and the two items of the menu.

#include "tallowin/Tallowin.h"

namespace tallowin {

void Tallowin::WireClock() {
  options_.SyncTimeChk.OnClick = [this] { timeSync_.SyncTimeChk_Click(); };
  mainForm_.synctimenowmnu.OnClick = [this] { timeSync_.synctimenowmnu_Click(); };
  mainForm_.timesyncmnu.OnClick = [this] { timesyncmnu_Click(); };
}

void Tallowin::timesyncmnu_Click() {
  forms::MenuItem& item = mainForm_.timesyncmnu;
  item.SetChecked(!item.Checked());
  const bool on = item.Checked();
  options_.SyncTimeChk.SetValue(on ? forms::CheckBox::Checked : forms::CheckBox::Unchecked);
  log_.LogStatus(on ? "Time will be synced every 15 minutes, if you wish to sync time now"
                    : "Time will NOT be synced every 15 minutes, if you wish to sync time now",
                 true);
  log_.LogStatus("choose Sync Time Now from Internet Utilities", true);
  settings_.SaveSettings();
}

}  // namespace tallowin
