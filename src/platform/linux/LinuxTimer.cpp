#include "platform/linux/LinuxTimer.h"

#include <QTimer>
#include <utility>

namespace tallowin::platform::linux_host {

using std::chrono::steady_clock;

struct LinuxTimer::Clockwork : std::enable_shared_from_this<Clockwork> {
  Clockwork(EventLoop& eventLoop, std::chrono::milliseconds period, std::function<void()> handler)
      : loop(eventLoop), interval(period), tick(std::move(handler)) {
    // The toolkit may let others come up to a twentieth early, and a warning must not blink faster
    // than it is meant to.
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(interval);
  }

  void Tick() {
    if (!enabled || running) return;
    // A tick that comes late would otherwise have the next one too close behind it.
    timer.start();
    const std::shared_ptr<Clockwork> self = shared_from_this();
    const steady_clock::time_point start = steady_clock::now();
    running = true;
    loop.Deliver(tick);
    running = false;
    // The toolkit drops what falls due during a tick; one of those is made up for.
    if (enabled && steady_clock::now() - start >= interval) loop.Post([self] { self->Tick(); });
  }

  QTimer timer;
  EventLoop& loop;
  std::chrono::milliseconds interval;
  std::function<void()> tick;
  bool enabled = false;
  bool running = false;
};

LinuxTimer::LinuxTimer(EventLoop& loop, std::chrono::milliseconds interval,
                       std::function<void()> tick)
    : clockwork_(std::make_shared<Clockwork>(loop, interval, std::move(tick))) {
  QTimer& timer = clockwork_->timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [clockwork = std::weak_ptr(clockwork_)] {
    if (const auto alive = clockwork.lock()) alive->Tick();
  });
}

LinuxTimer::~LinuxTimer() { SetEnabled(false); }

void LinuxTimer::SetEnabled(bool enabled) {
  if (clockwork_->enabled == enabled) return;
  clockwork_->enabled = enabled;
  if (enabled) {
    clockwork_->timer.start();
  } else {
    clockwork_->timer.stop();
  }
}

bool LinuxTimer::Enabled() const { return clockwork_->enabled; }

}  // namespace tallowin::platform::linux_host
