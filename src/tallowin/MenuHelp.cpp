// What the menu "Help" does.

#include "tallowin/Tallowin.h"

namespace tallowin {

void Tallowin::WireHelpMenu() {
  mainForm_.hlpmnu.OnClick = [this] {
    (void)runWith_.ShellOpen(module_.AppFolder() + "tallowinhlp.chm", false, 0);
  };
  mainForm_.aboutmnu.OnClick = [this] { aboutBox_.Show(); };
}

}  // namespace tallowin
