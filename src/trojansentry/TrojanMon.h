// The watch of the autostart places.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/INIFiles.h"
#include "core/MiscRoutines.h"
#include "core/StatusLog.h"
#include "core/TallowinModule.h"
#include "core/VbRegMod.h"
#include "forms/Questions.h"
#include "platform/EventLoop.h"
#include "platform/IniFiles.h"
#include "platform/Paths.h"
#include "platform/Registry.h"
#include "trojansentry/AutostartPlaces.h"
#include "trojansentry/AutostartResponses.h"

namespace tallowin::trojansentry {

/// It runs while its timer is enabled; there is no other state of running. Nothing of what it has
/// seen is stored: each start accepts whatever is in the places at that moment.
class TrojanMon {
 public:
  /// What other subsystems do for the watch.
  struct Actions {
    std::function<void()> PlayTrojanDetected;
    /// Looks for the running program behind the file, which is a full path or empty. Clears the
    /// text when it is done; what it leaves there comes back to it with the next tick.
    std::function<void(std::string& offendingFile)> HuntOffendingProcess;
  };
  struct Host {
    platform::Registry& registry;
    platform::IniFiles& iniFiles;
    platform::Paths& paths;
    platform::EventLoop& loop;
  };

  TrojanMon(const Host& host, const core::TallowinModule& module, core::StatusLog& log,
            forms::Questions& questions, Actions actions);

  /// Makes the keys that are missing and opens all three. False if one of them could not be opened.
  bool OpenAutostartKeys();

  /// Accepts what is in the places and starts to watch them. Where a key cannot be opened the watch
  /// does not start, which the log tells by the line of StopTrojanSentry alone.
  void StartTrojanSentry();
  void StopTrojanSentry();

 private:
  void TrojanTimer_Timer();
  void EnumerateCurrent();
  void EnumerateBaseline();
  void ReadIniLines(const std::string& systemIni, const std::string& winIni);
  void AcceptIniLines();

  core::VbRegMod registry_;
  core::INIFiles iniFiles_;
  core::MiscRoutines routines_;
  const core::TallowinModule& module_;
  core::StatusLog& log_;
  AutostartPlaces places_;
  ResponseTools tools_;
  std::function<void(std::string&)> huntOffendingProcess_;
  std::unique_ptr<platform::Timer> trojanTimer_;
};

}  // namespace tallowin::trojansentry
