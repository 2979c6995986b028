// The about box.
#pragma once

#include "core/Endpoints.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::core {

/// Title and version are filled in when it is loaded.
class FrmAbout : public forms::Form {
 public:
  FrmAbout() : Form("frmAbout") { Label1.SetToolTip(endpoints::kWebSite); }

  /// How far the ring around the eye has spread, from "0" to "8".
  forms::PictureBox picIcon{*this, "picIcon"};
  forms::Label lblTitle{*this, "lblTitle", ""};
  forms::Label lblVersion{*this, "lblVersion", ""};
  forms::Label Label1{*this, "Label1", "Visit the Tallowin web site"};
  forms::Button cmdOK{*this, "cmdOK", "OK"};
};

}  // namespace tallowin::core
