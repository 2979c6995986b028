// How the system makes itself heard when a decoy port was called.
#pragma once

#include <functional>
#include <string_view>

#include "core/SettingsStore.h"
#include "platform/SystemShutdown.h"
#include "portsentry/ContolPanelSounds.h"
#include "portsentry/FormFlash.h"

namespace tallowin::portsentry {

class AlarmResponses {
 public:
  /// What other subsystems do for an alarm.
  struct Actions {
    /// Presses button N of the tool bar, counted from 1. The tools work on the text of
    /// LoggedIPs.
    std::function<void(int button)> PressToolbar1;
    std::function<void()> HangUpConnection;
  };

  AlarmResponses(core::SettingsStore& settings, ContolPanelSounds& sounds, FormFlash& formFlash,
                 platform::SystemShutdown& shutdown, Actions actions)
      : settings_(settings),
        sounds_(sounds),
        formFlash_(formFlash),
        shutdown_(shutdown),
        actions_(std::move(actions)) {}

  /// Runs the responses that are set for the slot, in their fixed order; two lookups come first,
  /// always. An error ends it at once, and what was still to come is skipped.
  void RunAlarmResponses(int slot);

 private:
  [[nodiscard]] bool IsSet(int slot, std::string_view name);

  core::SettingsStore& settings_;
  ContolPanelSounds& sounds_;
  FormFlash& formFlash_;
  platform::SystemShutdown& shutdown_;
  Actions actions_;
};

}  // namespace tallowin::portsentry
