#include "platform/linux/LinuxTimer.h"

#include <QTimer>
#include <utility>

namespace tallowin::platform::linux_host {

using std::chrono::steady_clock;

struct LinuxTimer::Clockwork : std::enable_shared_from_this<Clockwork> {
  Clockwork(EventLoop& eventLoop, std::chrono::milliseconds period, std::function<void()> handler)
      : loop(eventLoop), interval(period), tick(std::move(handler)) {}

  void Tick() {
    if (!enabled || running) return;
    const std::shared_ptr<Clockwork> self = shared_from_this();
    const steady_clock::time_point start = steady_clock::now();
    running = true;
    loop.Deliver(tick);
    running = false;
    // The toolkit drops what falls due during a tick; one of those is made up for.
    if (enabled && steady_clock::now() - start >= interval) loop.Post([self] { self->Tick(); });
  }

  EventLoop& loop;
  std::chrono::milliseconds interval;
  std::function<void()> tick;
  bool enabled = false;
  bool running = false;
};

LinuxTimer::LinuxTimer(EventLoop& loop, std::chrono::milliseconds interval,
                       std::function<void()> tick)
    : clockwork_(std::make_shared<Clockwork>(loop, interval, std::move(tick))),
      timer_(std::make_unique<QTimer>()) {
  timer_->setInterval(interval);
  QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(),
                   [clockwork = clockwork_] { clockwork->Tick(); });
}

LinuxTimer::~LinuxTimer() { clockwork_->enabled = false; }

void LinuxTimer::SetEnabled(bool enabled) {
  if (clockwork_->enabled == enabled) return;
  clockwork_->enabled = enabled;
  if (enabled) {
    timer_->start();
  } else {
    timer_->stop();
  }
}

bool LinuxTimer::Enabled() const { return clockwork_->enabled; }

}  // namespace tallowin::platform::linux_host
