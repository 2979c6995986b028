// The message loop straight on Qt's, for one window at a time.
#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <vector>

#include "platform/EventLoop.h"

namespace tallowin::desktop {

class QtLoop : public platform::EventLoop {
 public:
  void DoEvents() override { QCoreApplication::processEvents(); }
  void RunUntil(const std::function<bool()>& done) override {
    while (!done()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      if (ended_) throw platform::ProgramEnded();
    }
  }
  void Deliver(const std::function<void()>& handler) override {
    if (ended_) return;
    ++delivered;
    try {
      handler();
    } catch (const platform::ProgramEnded&) {
      ended_ = true;
    }
  }
  void Post(std::function<void()> handler) override {
    QTimer::singleShot(0, [this, handler = std::move(handler)] { Deliver(handler); });
  }
  [[nodiscard]] bool Nested() const override { return false; }
  [[noreturn]] void End(int) override {
    ended_ = true;
    throw platform::ProgramEnded();
  }
  [[nodiscard]] bool Ended() const override { return ended_; }
  [[nodiscard]] int ExitStatus() const override { return 0; }
  void OnUnhandledError(std::function<void(const platform::RunTimeError&)>) override {}
  void OnTerminationRequest(std::function<void()>) override {}
  void Sleep(std::chrono::milliseconds) override {}
  std::unique_ptr<platform::Timer> MakeTimer(std::chrono::milliseconds,
                                             std::function<void()>) override {
    return nullptr;
  }

  int delivered = 0;

 private:
  bool ended_ = false;
};

}  // namespace tallowin::desktop
