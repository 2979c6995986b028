// A test of the whole alarm chain: the program calls its own first decoy port.
#pragma once

#include <memory>

#include "core/MainForm.h"
#include "core/SettingsStore.h"
#include "core/TallowinModule.h"
#include "forms/Questions.h"
#include "platform/EventLoop.h"
#include "platform/Winsock.h"

namespace tallowin::portsentry {

/// The listener does not know who calls, so everything that is set for the port really happens,
/// a shutdown included. What the decoy sends is never read. While `simhack` is disabled, a
/// simulation is under way.
class AttackSimulation {
 public:
  AttackSimulation(platform::SocketFactory& sockets, core::MainForm& mainForm,
                   core::SettingsStore& settings, const core::TallowinModule& module,
                   forms::Questions& questions, platform::EventLoop& loop);

 private:
  void simhack_Click();
  void SimHackSck_Close();
  void SimHackSck_Error();
  [[nodiscard]] bool CallFirstUsedSlot();

  core::MainForm& mainForm_;
  core::SettingsStore& settings_;
  const core::TallowinModule& module_;
  forms::Questions& questions_;
  platform::EventLoop& loop_;
  std::unique_ptr<platform::Winsock> simHackSck_;
};

}  // namespace tallowin::portsentry
