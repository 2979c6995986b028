// What the about box does.
#pragma once

#include <memory>

#include "core/FrmAbout.h"
#include "core/Runwithbas.h"
#include "core/TallowinModule.h"
#include "platform/EventLoop.h"

namespace tallowin {

/// Two timers move the picture in turn: one lets the ring spread, the other draws it in. After a
/// few rounds both rest, since what never stops moving is in the way of whoever reads, and costs
/// power.
class AboutBox {
 public:
  AboutBox(core::FrmAbout& form, const core::TallowinModule& module, core::Runwithbas& runWith,
           platform::EventLoop& loop);

  /// Modeless.
  void Show();

 private:
  void Form_Activate();
  void Timer1_Timer();
  void Timer2_Timer();
  [[nodiscard]] bool FrameIsDue();
  void MoveTo(int frame);

  core::FrmAbout& form_;
  const core::TallowinModule& module_;
  std::unique_ptr<platform::Timer> timer1_;
  std::unique_ptr<platform::Timer> timer2_;
  int ticks_ = 0;
  int frame_ = 0;
  int roundsLeft_ = 0;
};

}  // namespace tallowin
