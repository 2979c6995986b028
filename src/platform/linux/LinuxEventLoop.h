// The message loop on Qt's event dispatcher.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/EventLoop.h"
#include "platform/linux/EventPoller.h"
#include "platform/linux/PostedHandlers.h"
#include "platform/linux/TerminationSignals.h"

class QSocketNotifier;

namespace tallowin::platform::linux_host {

/// Needs a QCoreApplication (or QApplication) that outlives it; never calls its exec or exit. The
/// program runs inside RunUntil([] { return false; }), which ends with ProgramEnded. Several may
/// live on one application: each has its own end, and a pass of one serves the others too.
class LinuxEventLoop final : public EventLoop {
 public:
  LinuxEventLoop();
  ~LinuxEventLoop() override;

  void DoEvents() override;
  void RunUntil(const std::function<bool()>& done) override;
  void Deliver(const std::function<void()>& handler) override;
  void Post(std::function<void()> handler) override;
  [[nodiscard]] bool Nested() const override { return nesting_ > 0 || runs_ > 1; }
  [[noreturn]] void End(int exitStatus) override;
  [[nodiscard]] bool Ended() const override { return exitStatus_.has_value(); }
  [[nodiscard]] int ExitStatus() const override { return exitStatus_.value_or(0); }
  void OnUnhandledError(std::function<void(const RunTimeError&)> handler) override;
  void OnTerminationRequest(std::function<void()> handler) override;
  void Sleep(std::chrono::milliseconds time) override;
  std::unique_ptr<Timer> MakeTimer(std::chrono::milliseconds interval,
                                   std::function<void()> tick) override;

  /// How many passes of DoEvents the running handler stands in.
  [[nodiscard]] int Nesting() const { return nesting_; }

  /// Where sockets and pipes of this host are watched. Handlers run outside of Deliver.
  [[nodiscard]] EventPoller& Poller() { return poller_; }

 private:
  using Predicate = const std::function<bool()>*;
  /// False if there was nothing to deliver.
  bool Pass(bool wait, Predicate done);
  [[nodiscard]] bool LookedJustNow();
  [[nodiscard]] bool PassGoesOn() const;
  void ServeDescriptors();
  void ThrowIfEnded() const;
  void MarkEnded(int exitStatus);
  void Run(const std::function<void()>& handler);
  void HandleError(const RunTimeError& error);
  void RequestTermination();

  EventPoller poller_;
  PostedHandlers posted_{poller_};
  std::unique_ptr<QSocketNotifier> notifier_;
  std::unique_ptr<TerminationSignals> signals_;
  std::function<bool()> passGoesOn_;
  std::function<void(const RunTimeError&)> onUnhandledError_;
  std::function<void()> onTerminationRequest_;
  std::optional<int> exitStatus_;
  Predicate done_ = nullptr;                         ///< what the innermost pass waits for
  std::chrono::steady_clock::time_point idleSince_;  ///< the last pass without an event
  std::uint64_t interestsThen_ = 0;
  int nesting_ = 0;
  int runs_ = 0;  ///< how many calls of RunUntil are under way
  bool terminating_ = false;
};

}  // namespace tallowin::platform::linux_host
