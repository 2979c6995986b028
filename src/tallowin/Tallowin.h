// The one object that owns everything.
#pragma once

#include <string>
#include <string_view>

#include "analysis/FileAnalysis.h"
#include "analysis/InfectionCheck.h"
#include "analysis/InternetStatistics.h"
#include "analysis/ModList9x.h"
#include "analysis/Netstatfrm.h"
#include "analysis/ProcessManFrm.h"
#include "analysis/ProcessManager.h"
#include "analysis/ReadFile.h"
#include "analysis/StringExtractFrm.h"
#include "analysis/TrojanDetect.h"
#include "core/Endpoints.h"
#include "core/Form1.h"
#include "core/FrmAbout.h"
#include "core/MainForm.h"
#include "core/MiscRoutines.h"
#include "core/Options.h"
#include "core/OptionsDialog.h"
#include "core/Runwithbas.h"
#include "core/SettingsStore.h"
#include "core/StatusLog.h"
#include "core/TallowinModule.h"
#include "forms/Form.h"
#include "forms/Questions.h"
#include "nettools/Icmp.h"
#include "nettools/IdentDServer.h"
#include "nettools/IpTools.h"
#include "nettools/ModemHangUp.h"
#include "nettools/TimeSync.h"
#include "nettools/WhoisClient.h"
#include "platform/Host.h"
#include "portsentry/AlarmResponses.h"
#include "portsentry/AttackSimulation.h"
#include "portsentry/BigMSG.h"
#include "portsentry/ChatWindow.h"
#include "portsentry/ConnectionHandling.h"
#include "portsentry/ContolPanelSounds.h"
#include "portsentry/FormFlash.h"
#include "portsentry/IntruderChat.h"
#include "portsentry/PortListeners.h"
#include "reporting/AutoUpdate.h"
#include "reporting/EventNotification.h"
#include "reporting/HTTPModule.h"
#include "reporting/HackerReport.h"
#include "reporting/Mail.h"
#include "reporting/ReportHacker.h"
#include "reporting/UpdateCheck.h"
#include "tallowin/AboutBox.h"
#include "tallowin/TrayIcon.h"
#include "trojansentry/HuntOffendingProcess.h"
#include "trojansentry/TrojanMon.h"

namespace tallowin {

/// The whole program behind a front end. Nothing happens before Start. `host` and `questions` must
/// outlive it; so must front ends let go of its forms before it goes.
class Tallowin {
 public:
  /// `commandLine` is the text of the arguments, joined by blanks. The endpoints are others only in
  /// tests.
  Tallowin(const platform::Host& host, forms::Questions& questions, std::string commandLine,
           const core::Endpoints& endpoints = {});

  [[nodiscard]] forms::Forms& Forms() { return forms_; }
  [[nodiscard]] core::MainForm& MainForm() { return mainForm_; }
  [[nodiscard]] core::Options& Options() { return options_; }
  [[nodiscard]] core::SettingsStore& Settings() { return settings_; }
  [[nodiscard]] portsentry::ChatWindow& ChatWindow() { return chatWindow_; }
  [[nodiscard]] portsentry::BigMSG& BigMSG() { return bigMSG_; }
  [[nodiscard]] analysis::ProcessManFrm& ProcessManFrm() { return processManFrm_; }
  [[nodiscard]] analysis::Netstatfrm& Netstatfrm() { return netstatfrm_; }
  [[nodiscard]] core::FrmAbout& FrmAbout() { return frmAbout_; }
  [[nodiscard]] reporting::ReportHacker& ReportHacker() { return reportHacker_; }
  [[nodiscard]] reporting::AutoUpdate& AutoUpdate() { return autoUpdate_; }
  [[nodiscard]] analysis::StringExtractFrm& StringExtractFrm() { return stringExtractFrm_; }

  /// The Load of MainForm. Call it, like Quit, as an event (EventLoop::Deliver).
  void Start();

  /// Writes the log to a file and ends the program at once: nothing else is saved or closed in
  /// order, as everything durable was written when it changed. Does not return.
  void Quit();

  /// Writes the log to a file, for when the session may be about to end. It may also be called off,
  /// so the guard goes on.
  void SaveLog();

  void CheckArguments();

  /// Runs a program and waits for it, 30 seconds at most; what takes longer is left running. The
  /// whole program stands still meanwhile.
  void ShellAndWait(std::string_view commandLine);

  /// "port" rebuilds or stops Port Sentry, "trojan" Trojan Sentry, by the tick of the menu item.
  /// The case does not count; any other word does nothing.
  void UpdateSentry(std::string_view which);

 private:
  // Menu.cpp
  void WireMenu();
  void WireServiceItem(forms::MenuItem& item, forms::CheckBox& box);
  void AskToRemoveLogs();
  void AskToExit();

  // OptionsHandlers.cpp
  void WireOptions();
  void PortChk_Click();
  void ActiveMonChk_Click();

  // MenuHelp.cpp
  void WireHelpMenu();

  // ClockMenu.cpp
  void WireClock();
  void timesyncmnu_Click();

  // ReportingMenu.cpp
  void WireReporting();

  // CommandLine.cpp
  void RestoreMainWindow();

  void EndByError(const platform::RunTimeError& error);
  [[nodiscard]] portsentry::PortSockets MakePortSockets();
  [[nodiscard]] portsentry::AlarmResponses::Actions MakeAlarmActions();
  [[nodiscard]] trojansentry::TrojanMon::Actions MakeWatchActions();

  platform::Host host_;
  forms::Questions& questions_;
  std::string commandLine_;
  bool endingByError_ = false;

  core::MainForm mainForm_;
  core::Options options_;
  core::Form1 form1_;
  portsentry::ChatWindow chatWindow_;
  portsentry::BigMSG bigMSG_;
  reporting::ReportHacker reportHacker_;
  analysis::ProcessManFrm processManFrm_;
  analysis::Netstatfrm netstatfrm_;
  core::FrmAbout frmAbout_;
  reporting::AutoUpdate autoUpdate_;
  analysis::StringExtractFrm stringExtractFrm_;
  forms::Forms forms_;

  core::TallowinModule module_;
  core::MiscRoutines misc_;
  core::Runwithbas runWith_;
  core::SettingsStore settings_;
  core::OptionsDialog optionsDialog_;
  core::StatusLog log_;
  reporting::Mail mail_;
  reporting::EventNotification notification_;
  nettools::IcmpTools icmpTools_;
  nettools::WhoisClient whois_;
  nettools::IpTools ipTools_;
  portsentry::PortSockets portSockets_;
  portsentry::PortListeners portListeners_;
  portsentry::IntruderChat chat_;
  portsentry::ContolPanelSounds sounds_;
  portsentry::FormFlash formFlash_;
  nettools::ModemHangUp modemHangUp_;
  portsentry::AlarmResponses alarms_;
  portsentry::ConnectionHandling connections_;
  portsentry::AttackSimulation simulation_;
  analysis::ReadFile readFile_;
  analysis::TrojanDetect trojanDetect_;
  analysis::ModList9x modList9x_;
  analysis::InfectionCheck infectionCheck_;
  analysis::ProcessManager processManager_;
  analysis::InternetStatistics internetStatistics_;
  analysis::FileAnalysis fileAnalysis_;
  trojansentry::OffendingProcessHunt hunt_;
  trojansentry::TrojanMon trojanMon_;
  nettools::IdentDServer identD_;
  nettools::TimeSync timeSync_;
  reporting::HackerReport hackerReport_;
  reporting::HTTPModule httpModule_;
  reporting::UpdateCheck updateCheck_;
  AboutBox aboutBox_;
  TrayIcon trayIcon_;
};

}  // namespace tallowin
