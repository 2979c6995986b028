// The form that is never seen: it stands behind the icon in the notification area.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::core {

/// Its two commands have no way to them from the screen; Port Sentry keeps them in step.
class Form1 : public forms::Form {
 public:
  Form1() : Form("Form1") {}

  forms::MenuItem mnuBar{*this, "mnuBar", "PopupMenu"};
  forms::MenuItem enablemnu{mnuBar, "enablemnu", "Enable Protection"};
  forms::MenuItem disableprotectmnu{mnuBar, "disableprotectmnu", "Disable Protection"};
};

}  // namespace tallowin::core
