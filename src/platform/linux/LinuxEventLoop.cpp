#include "platform/linux/LinuxEventLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <thread>
#include <utility>

#include "platform/linux/LinuxTimer.h"

namespace tallowin::platform::linux_host {
namespace {

// A pass costs several system calls, and each status line asks for one: a caller's dozen of lines
// would cost more to look around than to write.
constexpr std::chrono::microseconds kQuietAfterAnIdlePass{100};

/// Sets a variable for the time of a scope.
template <typename T>
class Scoped {
 public:
  Scoped(T& variable, T value)
      : variable_(variable), former_(std::exchange(variable, std::move(value))) {}
  Scoped(const Scoped&) = delete;
  Scoped& operator=(const Scoped&) = delete;
  ~Scoped() { variable_ = std::move(former_); }

 private:
  T& variable_;
  T former_;
};

}  // namespace

LinuxEventLoop::LinuxEventLoop()
    : notifier_(std::make_unique<QSocketNotifier>(poller_.Descriptor(), QSocketNotifier::Read)),
      passGoesOn_([this] { return PassGoesOn(); }) {
  PassOverBrokenPipes();
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this] { ServeDescriptors(); });
}

LinuxEventLoop::~LinuxEventLoop() = default;

void LinuxEventLoop::DoEvents() {
  ThrowIfEnded();
  if (nesting_ >= MaxNesting || LookedJustNow()) return;
  const Scoped nesting(nesting_, nesting_ + 1);
  const auto now = std::chrono::steady_clock::now();
  if (!Pass(false, nullptr)) {
    idleSince_ = now;
    interestsThen_ = poller_.Interests();
  }
  ThrowIfEnded();
}

bool LinuxEventLoop::LookedJustNow() {
  return poller_.Interests() == interestsThen_ && posted_.Empty() &&
         std::chrono::steady_clock::now() - idleSince_ < kQuietAfterAnIdlePass;
}

void LinuxEventLoop::RunUntil(const std::function<bool()>& done) {
  const Scoped runs(runs_, runs_ + 1);
  for (;;) {
    ThrowIfEnded();
    if (done()) return;
    Pass(true, &done);
  }
}

bool LinuxEventLoop::Pass(bool wait, Predicate done) {
  const Scoped scope(done_, done);
  return QAbstractEventDispatcher::instance()->processEvents(wait ? QEventLoop::WaitForMoreEvents
                                                                  : QEventLoop::AllEvents);
}

/// False once the program has ended, or once what RunUntil waits for has come about: what is still
/// ready then is left for later passes.
bool LinuxEventLoop::PassGoesOn() const {
  if (Ended()) return false;
  if (done_ == nullptr) return true;
  try {
    return !(*done_)();
  } catch (...) {
    return false;  // RunUntil asks again, and there the exception finds its way.
  }
}

void LinuxEventLoop::ServeDescriptors() {
  // Qt cannot be thrown through, and the work between the handlers can fail too, out of memory.
  Deliver([this] {
    posted_.Run([this](const std::function<void()>& handler) { Deliver(handler); }, passGoesOn_);
    poller_.Dispatch(passGoesOn_);
  });
}

void LinuxEventLoop::Deliver(const std::function<void()>& handler) {
  if (Ended()) return;
  try {
    Run(handler);
  } catch (const ProgramEnded&) {
    // Each pass that is under way throws it anew for the handler that it runs in.
  } catch (...) {
    // The handler of unhandled errors has itself failed: there is nobody left to tell.
    MarkEnded(1);
  }
}

void LinuxEventLoop::Run(const std::function<void()>& handler) {
  try {
    handler();
  } catch (const std::exception& failure) {
    HandleError(AsRunTimeError(failure));
  }
}

void LinuxEventLoop::HandleError(const RunTimeError& error) {
  if (!onUnhandledError_) End(1);
  // A copy, since the handler may set another one.
  const auto handler = onUnhandledError_;
  handler(error);
}

void LinuxEventLoop::Post(std::function<void()> handler) { posted_.Add(std::move(handler)); }

void LinuxEventLoop::End(int exitStatus) {
  MarkEnded(exitStatus);
  throw ProgramEnded{};
}

void LinuxEventLoop::MarkEnded(int exitStatus) {
  if (Ended()) return;
  exitStatus_ = exitStatus;
  // Nobody serves the descriptors any more, and they must not keep other loops awake.
  notifier_->setEnabled(false);
}

void LinuxEventLoop::ThrowIfEnded() const {
  if (Ended()) throw ProgramEnded{};
}

void LinuxEventLoop::OnUnhandledError(std::function<void(const RunTimeError&)> handler) {
  onUnhandledError_ = std::move(handler);
}

void LinuxEventLoop::OnTerminationRequest(std::function<void()> handler) {
  onTerminationRequest_ = std::move(handler);
  if (signals_) return;
  signals_ = std::make_unique<TerminationSignals>(poller_, [this] { RequestTermination(); });
}

void LinuxEventLoop::RequestTermination() {
  if (terminating_) return MarkEnded(1);
  const Scoped terminating(terminating_, true);
  const auto handler = onTerminationRequest_;  // It may set another one.
  Deliver(handler);
}

void LinuxEventLoop::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

std::unique_ptr<Timer> LinuxEventLoop::MakeTimer(std::chrono::milliseconds interval,
                                                 std::function<void()> tick) {
  return std::make_unique<LinuxTimer>(*this, interval, std::move(tick));
}

}  // namespace tallowin::platform::linux_host
