// The main window: the status log, the callers' addresses and the menu.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::core {

/// Controls only. What they do is wired in tallowin/Menu.cpp, and by the subsystems that own them.
class MainForm : public forms::Form {
 public:
  /// What LoggedIPs shows before anybody has called.
  static constexpr const char* kNoAddress = "IP Addresses...";

  MainForm();

  forms::MenuItem protmnu{*this, "protmnu", "&Services"};
  forms::MenuItem portsntmnu{protmnu, "portsntmnu", "&Port Sentry"};
  forms::MenuItem ActiveMonMnu{protmnu, "ActiveMonMnu", "&Trojan Sentry"};
  forms::MenuItem identmnu{protmnu, "identmnu", "&IdentD Server"};
  forms::MenuItem timesyncmnu{protmnu, "timesyncmnu", "&Sync Time"};
  forms::MenuItem ServiceSep{protmnu, "ServiceSep", "-"};
  forms::MenuItem clearlog{protmnu, "clearlog", "&Clear Log"};
  forms::MenuItem savelog{protmnu, "savelog", "Save &Log File"};
  forms::MenuItem Removelogs{protmnu, "Removelogs", "Remove &All Logs"};
  forms::MenuItem exittwmnu{protmnu, "exittwmnu", "E&xit Tallowin"};

  forms::MenuItem analysis{*this, "analysis", "&Local Utilities"};
  forms::MenuItem stringextractmnu{analysis, "stringextractmnu", "&File Analysis"};
  forms::MenuItem ExeInfectChk{analysis, "ExeInfectChk", "&Executable Infection Check"};
  forms::MenuItem procman{analysis, "procman", "&Process Manager"};

  forms::MenuItem inetdefense{*this, "inetdefense", "&Internet Utilities"};
  forms::MenuItem synctimenowmnu{inetdefense, "synctimenowmnu", "&Sync Time Now"};
  forms::MenuItem simhack{inetdefense, "simhack", "Simulate &Hacker"};
  forms::MenuItem inetstatsmnu{inetdefense, "inetstatsmnu", "Inter&net Statistics"};
  forms::MenuItem reporthackmnu{inetdefense, "reporthackmnu", "&Report Hack Attempt"};

  forms::MenuItem optionsmnu{*this, "optionsmnu", "&Preferences"};
  forms::MenuItem prefsmnu{optionsmnu, "prefsmnu", "&Options"};

  forms::MenuItem mainhlpmnu{*this, "mainhlpmnu", "&Help"};
  forms::MenuItem hlpmnu{mainhlpmnu, "hlpmnu", "H&elp", "F1"};
  forms::MenuItem checkupdates{mainhlpmnu, "checkupdates", "Check For &Updates", "F12"};
  forms::MenuItem aboutmnu{mainhlpmnu, "aboutmnu", "&About Tallowin"};

  forms::Label StatusLabel{*this, "StatusLabel", "Main Status:"};
  forms::TextBox Status{*this, "Status", {.multiLine = true, .locked = true}};

  forms::Frame Frame3{*this, "Frame3", "Tools"};
  forms::Label Label1{Frame3, "Label1", "IP Log:"};
  forms::ComboBox LoggedIPs{Frame3, "LoggedIPs", kNoAddress};
  forms::ToolBar Toolbar1{Frame3,
                          "Toolbar1",
                          {{"whois", "Whois"},
                           {"traceroute", "Trace Route"},
                           {"ping", "Ping"},
                           {"dnslookup", "Reverse DNS"}}};

  /// Below the height that start-up gives the window: never seen.
  forms::Frame NonVisible{*this, "NonVisible", "Non Visible Components"};
  forms::TextBox ArgHelp;
  /// The two programs of the infection check, as base64 text.
  forms::TextBox TestEXE;
  forms::TextBox Testcom;
};

}  // namespace tallowin::core
