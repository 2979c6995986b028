// The items of the menu that send a report and look for an update.

#include "tallowin/Tallowin.h"

namespace tallowin {

void Tallowin::WireReporting() {
  mainForm_.reporthackmnu.OnClick = [this] { hackerReport_.Show(); };
  mainForm_.checkupdates.OnClick = [this] { updateCheck_.Show(); };
}

}  // namespace tallowin
