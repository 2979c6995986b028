#include "core/Options.h"

#include "core/Endpoints.h"

namespace tallowin::core {

Options::Options()
    : Form("Options"), SMTPTxt{Frame5, "SMTPTxt", {.text = endpoints::kPresetSmtpServer}} {
  SetCaption("Tallowin Options");
  PortChk.SetToolTip("Stops hackers connecting to your system");
  ActiveMonChk.SetToolTip("Stops your system becoming infected with a backdoor virus (Trojan)");
  SyncTimeChk.SetToolTip("Keeps your computer clock accurate");
  IdentDChk.SetToolTip("Enables internet identification server for advanced users");
  VerboseChk.SetToolTip("Used for debugging purposes");
  OnTopChk.SetToolTip("Keeps the Tallowin window above all other windows");
  EmailTxt.SetToolTip("Email address to be used for event notification");
  SMTPTxt.SetToolTip("SMTP server to be used for email notification");
  ICQtxt.SetToolTip("ICQ number to be used for event notification");

  PortNumTxt.SetToolTip("Enter Port Number In Here");
  PortDescrip.SetToolTip("Enter A Description For This Port");
  SirenChk.SetToolTip("Sounds an audibal warning");
  WhoisChk.SetToolTip("Automatically look up the hackers ISP on connection attempt");
  TraceRouteChk.SetToolTip(
      "Scan through common ports on hackers computer and see if they are listening");
  HangupChk.SetToolTip("Hangs up your modem if connection is attempted on this port");
  ShutDownChk.SetToolTip("Shuts down your computer if someone attempts to connect to this port");
  VisualAlert.SetToolTip("Flashes visual warning on attempted connection");
  Command3.SetToolTip("Reverts the socket settings to the factory presets");
}

}  // namespace tallowin::core
