// The form whose controls are the live store of the general settings.
#pragma once

#include <array>

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::core {

/// There is no second copy of these values: every subsystem reads the controls. The six boxes start
/// greyed, so that the first stored value is a change, be it 0 or 1, and runs the box's handler;
/// that is how services come up.
///
/// What the boxes of the services do is wired in tallowin/OptionsHandlers.cpp, the rest in
/// OptionsDialog.h.
class Options : public forms::Form {
 public:
  Options();

  forms::SSTab SSTab1{*this, "SSTab1", {"General Options", "Port Options"}};

  forms::Frame Frame7{SSTab1, "Frame7", "Services"};
  forms::CheckBox PortChk{Frame7, "PortChk", "Port Sentry", forms::CheckBox::Greyed};
  forms::CheckBox ActiveMonChk{Frame7, "ActiveMonChk", "Trojan Sentry", forms::CheckBox::Greyed};
  forms::CheckBox SyncTimeChk{Frame7, "SyncTimeChk", "Sync Time", forms::CheckBox::Greyed};
  forms::CheckBox IdentDChk{Frame7, "IdentDChk", "IdentD Server", forms::CheckBox::Greyed};

  forms::Frame Frame4{SSTab1, "Frame4", "Advanced"};
  forms::CheckBox VerboseChk{Frame4, "VerboseChk", "Verbose Mode", forms::CheckBox::Greyed};
  forms::CheckBox OnTopChk{Frame4, "OnTopChk", "Always On Top", forms::CheckBox::Greyed};

  forms::Frame Frame5{SSTab1, "Frame5", "Other Details"};
  forms::Label NotificationLbl{Frame5, "NotificationLbl", "Event Notification"};
  forms::Label EmailLbl{Frame5, "EmailLbl", "Email:"};
  forms::TextBox EmailTxt{Frame5, "EmailTxt", {}};
  forms::Label SMTPLbl{Frame5, "SMTPLbl", "SMTP Server:"};
  forms::TextBox SMTPTxt;
  forms::Label ICQLbl{Frame5, "ICQLbl", "ICQ #:"};
  forms::TextBox ICQtxt{Frame5, "ICQtxt", {}};
  forms::Label OptionalLbl{Frame5, "OptionalLbl",
                           "These fields are optional. If filled in you will be notified when an "
                           "event takes place. If you do not wish to be notified do not fill in "
                           "these details."};
  forms::Label IdentLbl{Frame5, "IdentLbl", "Ident Server"};
  forms::Label IdentDLbl{Frame5, "IdentDLbl", "IdentD Reply:"};
  forms::TextBox IdentDTxt{Frame5, "IdentDTxt", {.text = "Anonymous"}};

  /// One slot of the port table.
  forms::Frame Frame1{SSTab1, "Frame1", "Port Setting 1"};
  std::array<forms::Button, 2> Command4{forms::Button{Frame1, "Command4(0)", "<"},
                                        forms::Button{Frame1, "Command4(1)", ">"}};
  forms::Label SocketLbl{Frame1, "SocketLbl", "Socket"};
  forms::TextBox PortNumTxt{Frame1, "PortNumTxt", {.maxLength = 5}};
  forms::PictureBox Image7{Frame1, "Image7"};
  forms::Label DescripLbl{Frame1, "DescripLbl", "Socket Description"};
  forms::TextBox PortDescrip{Frame1, "PortDescrip", {}};
  forms::Frame Frame2{Frame1, "Frame2", "On Connnection Attempt"};
  forms::ComboBox ActionCombo{Frame2, "ActionCombo"};
  forms::TextBox TextToSend{Frame2, "TextToSend", {.multiLine = true}};
  forms::Frame Frame3{Frame1, "Frame3", "Additional Options"};
  forms::CheckBox SirenChk{Frame3, "SirenChk", "Audible Warning"};
  forms::CheckBox WhoisChk{Frame3, "WhoisChk", "Whois Lookup"};
  forms::CheckBox TraceRouteChk{Frame3, "TraceRouteChk", "Traceroute"};
  forms::CheckBox HangupChk{Frame3, "HangupChk", "Hangup Modem"};
  forms::CheckBox ShutDownChk{Frame3, "ShutDownChk", "Shutdown PC"};
  forms::CheckBox VisualAlert{Frame3, "VisualAlert", "Visual Warning"};
  forms::Button Command3{Frame1, "Command3", "Load Defaults"};

  forms::Button Command1{*this, "Command1", "OK"};
  forms::Button Command2{*this, "Command2", "Cancel"};
};

}  // namespace tallowin::core
