// The message loop: every event of the program is delivered through it, on one thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/RunTimeError.h"

namespace tallowin::platform {

/// A repeating timer. Destroying it stops it. It is created stopped. A tick that is due while the
/// tick before it is still running (in a question, or in a nested pass of the loop) is held back.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual void SetEnabled(bool enabled) = 0;
  [[nodiscard]] virtual bool Enabled() const = 0;
};

class EventLoop {
 public:
  virtual ~EventLoop() = default;

  /// One pass of the message loop: events that are pending now (sockets, timers, window, terminal)
  /// are delivered and the call returns; it never waits. A host may leave what has come up less
  /// than a millisecond ago to the next pass, but never what was posted. Passes may nest, since a
  /// handler may call this in turn. At `MaxNesting` a pass delivers nothing and returns at once;
  /// what is pending stays queued. Throws ProgramEnded if the program has ended, be it inside this
  /// pass.
  virtual void DoEvents() = 0;
  static constexpr int MaxNesting = 10;

  /// Delivers events, waiting for them, until `done` gives true. `done` is asked before the first
  /// wait and after each delivery. This is what a modal question stands in. Not subject to
  /// `MaxNesting`. Throws ProgramEnded like DoEvents.
  virtual void RunUntil(const std::function<bool()>& done) = 0;

  /// Runs one handler as an event. Every callback of the host and of a front end goes through here:
  /// a RunTimeError that leaves `handler` goes to the handler set by OnUnhandledError, and
  /// ProgramEnded stops here. Once the program has ended nothing is run any more.
  virtual void Deliver(const std::function<void()>& handler) = 0;

  /// Runs `handler` as an event of its own, soon, in a later pass of the loop. Thread-safe.
  virtual void Post(std::function<void()> handler) = 0;

  /// True while the running handler stands on another one, which called DoEvents or RunUntil and
  /// cannot go on before this one returns.
  [[nodiscard]] virtual bool Nested() const = 0;

  /// Ends the program at once: no statement behind this call runs, in any handler that is under
  /// way. `exitStatus` becomes the status of the process. The first call decides the status.
  [[noreturn]] virtual void End(int exitStatus) = 0;
  [[nodiscard]] virtual bool Ended() const = 0;
  [[nodiscard]] virtual int ExitStatus() const = 0;

  /// Called with each error that no handler took. Default: End with status 1.
  virtual void OnUnhandledError(std::function<void(const RunTimeError&)> handler) = 0;

  /// Called when the system asks the program to end (SIGTERM, SIGINT, SIGHUP).
  virtual void OnTerminationRequest(std::function<void()> handler) = 0;

  /// Stops the whole program for the given time: no event is delivered meanwhile.
  virtual void Sleep(std::chrono::milliseconds time) = 0;

  virtual std::unique_ptr<Timer> MakeTimer(std::chrono::milliseconds interval,
                                           std::function<void()> tick) = 0;
};

}  // namespace tallowin::platform
