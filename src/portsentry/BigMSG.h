// The warning that nobody overlooks.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::portsentry {

/// Controls only. It blinks by FormFlash, above all other windows, and no click on it does
/// anything.
class BigMSG : public forms::Form {
 public:
  BigMSG() : Form("BigMSG") {
    SetCaption("Tallowin Warning");
    OnActivate = [this] { Label1.SetCaption("WARNING\r\nConnection Attempted"); };
    OnCloseBox = [] { /* The blinking ends by itself. */ };
  }

  /// In the middle of the window.
  forms::Label Label1{*this, "Label1", "CONNECTION ATTEMPTED!!!"};
  forms::Label Label2{*this, "Label2", "Tallowin Warning"};
};

}  // namespace tallowin::portsentry
