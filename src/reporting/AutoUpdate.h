// The form that tells whether there is a newer version.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::reporting {

/// What it does is in UpdateCheck.h.
class AutoUpdate : public forms::Form {
 public:
  AutoUpdate() : Form("AutoUpdate") {
    SetCaption("AutoUpdate");
    Command2.SetEnabled(false);
  }

  forms::Label Label2{*this, "Label2", "Installed Version: "};
  forms::Label InstVer{*this, "InstVer", ""};
  forms::Label Label3{*this, "Label3", "Latest Version:"};
  forms::Label LatestVer{*this, "LatestVer", "Unknown"};
  forms::Label Label4{*this, "Label4", "Release Date:"};
  forms::Label RlsDateTxt{*this, "RlsDateTxt", "Unknown"};
  forms::Label Label1{*this, "Label1", "Put a nice animation here?"};
  forms::Label StatusTxt{*this, "StatusTxt", "Checking For New Version..."};
  forms::TextBox Text1{*this, "Text1", {.multiLine = true, .locked = true}};
  forms::Button Command1{*this, "Command1", "Check For Update"};
  forms::Button Command2{*this, "Command2", "Download Update"};
};

}  // namespace tallowin::reporting
