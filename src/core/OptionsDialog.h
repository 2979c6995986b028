// What the dialog Options does: the port table, OK, Cancel, the presets.
#pragma once

#include <cstdint>

#include "core/Options.h"
#include "core/Runwithbas.h"
#include "core/SettingsStore.h"
#include "core/TallowinModule.h"
#include "forms/Questions.h"
#include "platform/EventLoop.h"
#include "platform/Sound.h"

namespace tallowin::core {

/// Every change of a control of the port table goes into the table at once; OK and Cancel decide
/// whether it lasts. No handler takes errors: a number that a slot cannot hold ends the program,
/// and so do missing settings at OK, Cancel and "Load Defaults".
class OptionsDialog {
 public:
  struct Services {
    platform::EventLoop& loop;
    Runwithbas& shell;
    platform::Sound& sound;
    forms::Questions& questions;
  };

  /// Wires the form, but for the boxes of the general settings.
  OptionsDialog(Options& options, SettingsStore& settings, TallowinModule& module,
                const Services& services);

  /// Returns when the user is done with it.
  void ShowModal() { options_.ShowModal(loop_); }

 private:
  void Form_Load();
  void Form_Activate();
  void WirePortControls();
  /// Each control writes back what it is given, so `CurrentSlot` must be the slot already.
  void ShowPortSlot(std::int16_t slot);
  void MoveTo(int slot);
  void UpdatePortImage();
  [[nodiscard]] bool FindPortConflict() const;

  void PortNumTxt_Change();
  void ActionCombo_Change();
  void OK_Click();
  void Cancel_Click();
  void LoadDefaults_Click();
  /// The step to the third state does nothing, the step back rebuilds the listeners.
  void BouncePortSentry();

  [[nodiscard]] PortSetting& CurrentSetting() { return settings_.PortSettings(currentSlot_); }

  Options& options_;
  SettingsStore& settings_;
  TallowinModule& module_;
  platform::EventLoop& loop_;
  Runwithbas& shell_;
  platform::Sound& sound_;
  forms::Questions& questions_;
  std::int16_t currentSlot_ = kFirstSlot;
};

}  // namespace tallowin::core
