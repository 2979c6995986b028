// The form whose controls are the live store of the general settings.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::core {

/// There is no second copy of these values: every subsystem reads the controls. The six boxes start
/// greyed, so that the first stored value is a change, be it 0 or 1, and runs the box's handler;
/// that is how services come up.
class Options : public forms::Form {
 public:
  Options();

  forms::Frame Frame7{*this, "Frame7", "Services"};
  forms::CheckBox PortChk{Frame7, "PortChk", "Port Sentry", forms::CheckBox::Greyed};
  forms::CheckBox ActiveMonChk{Frame7, "ActiveMonChk", "Trojan Sentry", forms::CheckBox::Greyed};
  forms::CheckBox SyncTimeChk{Frame7, "SyncTimeChk", "Sync Time", forms::CheckBox::Greyed};
  forms::CheckBox IdentDChk{Frame7, "IdentDChk", "IdentD Server", forms::CheckBox::Greyed};

  forms::Frame Frame4{*this, "Frame4", "Advanced"};
  forms::CheckBox VerboseChk{Frame4, "VerboseChk", "Verbose Mode", forms::CheckBox::Greyed};
  forms::CheckBox OnTopChk{Frame4, "OnTopChk", "Always On Top", forms::CheckBox::Greyed};

  forms::Frame Frame5{*this, "Frame5", "Other Details"};
  forms::TextBox EmailTxt{Frame5, "EmailTxt", {}};
  forms::TextBox SMTPTxt;
  forms::TextBox ICQtxt{Frame5, "ICQtxt", {}};
  forms::TextBox IdentDTxt{Frame5, "IdentDTxt", {.text = "Anonymous"}};
};

}  // namespace tallowin::core
