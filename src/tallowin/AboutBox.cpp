#include "tallowin/AboutBox.h"

#include <chrono>
#include <string>

namespace tallowin {

namespace {

constexpr std::chrono::milliseconds kAnimationInterval{1};
// A picture for each tick would be more than anybody sees.
constexpr int kTicksPerFrame = 50;
constexpr int kLastFrame = 8;
constexpr int kRounds = 3;

}  // namespace

AboutBox::AboutBox(core::FrmAbout& form, const core::TallowinModule& module,
                   core::Runwithbas& runWith, platform::EventLoop& loop)
    : form_(form),
      module_(module),
      timer1_(loop.MakeTimer(kAnimationInterval, [this] { Timer1_Timer(); })),
      timer2_(loop.MakeTimer(kAnimationInterval, [this] { Timer2_Timer(); })) {
  form_.OnActivate = [this] { Form_Activate(); };
  form_.Label1.OnClick = [&runWith] {
    (void)runWith.ShellOpen(core::endpoints::kWebSite, false, 0);
  };
  form_.cmdOK.OnClick = [this] { form_.Hide(); };
}

void AboutBox::Show() {
  form_.SetCaption("About " + module_.ProductTitle);
  form_.lblTitle.SetCaption(module_.ProductTitle);
  form_.lblVersion.SetCaption("Version " + module_.AppVersion);
  form_.Show();
}

void AboutBox::Form_Activate() {
  MoveTo(0);
  roundsLeft_ = kRounds;
  timer2_->SetEnabled(false);
  timer1_->SetEnabled(true);
}

void AboutBox::Timer1_Timer() {
  if (!FrameIsDue()) return;
  MoveTo(frame_ + 1);
  if (frame_ < kLastFrame) return;
  timer1_->SetEnabled(false);
  timer2_->SetEnabled(true);
}

void AboutBox::Timer2_Timer() {
  if (!FrameIsDue()) return;
  MoveTo(frame_ - 1);
  if (frame_ > 0) return;
  timer2_->SetEnabled(false);
  timer1_->SetEnabled(--roundsLeft_ > 0);
}

bool AboutBox::FrameIsDue() {
  if (!form_.Visible()) {
    timer1_->SetEnabled(false);
    timer2_->SetEnabled(false);
    return false;
  }
  ticks_ = (ticks_ + 1) % kTicksPerFrame;
  return ticks_ == 0;
}

void AboutBox::MoveTo(int frame) {
  frame_ = frame;
  form_.picIcon.SetPicture(std::to_string(frame));
}

}  // namespace tallowin
