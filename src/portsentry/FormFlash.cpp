#include "portsentry/FormFlash.h"

#include "core/TallowinModule.h"

namespace tallowin::portsentry {

namespace {

constexpr std::chrono::milliseconds kInterval{1200};
constexpr std::int16_t kChanges = 5;

}  // namespace

FormFlash::FormFlash(BigMSG& window, platform::EventLoop& loop)
    : window_(window), timer_(loop.MakeTimer(kInterval, [this] { Tick(); })) {}

void FormFlash::Start() {
  flashCount_ = 0;
  timer_->SetEnabled(true);
}

void FormFlash::Tick() {
  if (flashCount_ < kChanges) {
    // At its first use and not before: a front end makes a window for it then.
    core::SetTopMost(window_);
    window_.SetVisible(!window_.Visible());
    ++flashCount_;
    return;
  }
  window_.SetVisible(false);
  timer_->SetEnabled(false);
}

}  // namespace tallowin::portsentry
