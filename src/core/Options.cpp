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
}

}  // namespace tallowin::core
