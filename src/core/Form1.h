// The form that is never seen: it stands behind the icon in the notification area.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::core {

/// The two commands of its menu have no way to them from the screen; Port Sentry keeps them in
/// step.
class Form1 : public forms::Form {
 public:
  Form1() : Form("Form1") {}

  /// Gets the mouse messages of the icon.
  forms::PictureBox pichook{*this, "pichook"};
  forms::MenuItem mnuBar{*this, "mnuBar", "PopupMenu"};
  forms::MenuItem enablemnu{mnuBar, "enablemnu", "Enable Protection"};
  forms::MenuItem disableprotectmnu{mnuBar, "disableprotectmnu", "Disable Protection"};

  /// As it was when the icon was added: the icon is deleted with the same record.
  forms::NotifyIconData NotifyIconRecord;
};

}  // namespace tallowin::core
