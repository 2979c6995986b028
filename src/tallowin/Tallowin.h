// The one object that owns everything.
#pragma once

#include <string>
#include <string_view>

#include "core/Form1.h"
#include "core/MainForm.h"
#include "core/Options.h"
#include "core/SettingsStore.h"
#include "core/StatusLog.h"
#include "core/TallowinModule.h"
#include "forms/Form.h"
#include "forms/Questions.h"
#include "nettools/IdentDServer.h"
#include "platform/Host.h"
#include "portsentry/ChatWindow.h"
#include "portsentry/ConnectionHandling.h"
#include "portsentry/IntruderChat.h"
#include "portsentry/PortListeners.h"

namespace tallowin {

/// The whole program behind a front end. Nothing happens before Start. `host` and `questions` must
/// outlive it; so must front ends let go of its forms before it goes.
class Tallowin {
 public:
  /// `commandLine` is the text of the arguments, joined by blanks.
  Tallowin(const platform::Host& host, forms::Questions& questions, std::string commandLine);

  [[nodiscard]] forms::Forms& Forms() { return forms_; }
  [[nodiscard]] core::MainForm& MainForm() { return mainForm_; }
  [[nodiscard]] core::Options& Options() { return options_; }
  [[nodiscard]] core::SettingsStore& Settings() { return settings_; }
  [[nodiscard]] portsentry::ChatWindow& ChatWindow() { return chatWindow_; }

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

  /// "port" rebuilds or stops Port Sentry, by the tick of its menu item. The case does not count;
  /// any other word does nothing.
  void UpdateSentry(std::string_view which);

 private:
  // Menu.cpp
  void WireMenu();
  void WireOptions();
  void WireServiceItem(forms::MenuItem& item, forms::CheckBox& box);
  void PortChk_Click();
  void ActiveMonChk_Click();
  void AskToRemoveLogs();
  void AskToExit();

  // CommandLine.cpp
  void RestoreMainWindow();

  void EndByError(const platform::RunTimeError& error);
  [[nodiscard]] portsentry::PortSockets MakePortSockets();

  platform::Host host_;
  forms::Questions& questions_;
  std::string commandLine_;
  bool endingByError_ = false;

  core::MainForm mainForm_;
  core::Options options_;
  core::Form1 form1_;
  portsentry::ChatWindow chatWindow_;
  forms::Forms forms_;

  core::TallowinModule module_;
  core::SettingsStore settings_;
  core::StatusLog log_;
  portsentry::PortSockets portSockets_;
  portsentry::PortListeners portListeners_;
  portsentry::IntruderChat chat_;
  portsentry::ConnectionHandling connections_;
  nettools::IdentDServer identD_;
};

}  // namespace tallowin
