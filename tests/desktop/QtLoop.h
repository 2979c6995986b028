// The message loop straight on Qt's, for one window at a time.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

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

inline void Press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = {},
                  const QString& text = {}) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, modifiers, text);
    QCoreApplication::sendEvent(&widget, &event);
  }
}

inline void Click(QWidget& widget, QPointF at) {
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton, held, {});
    QCoreApplication::sendEvent(&widget, &event);
  }
}

inline testing::AssertionResult Becomes(const std::function<bool()>& condition) {
  QElapsedTimer waited;
  waited.start();
  while (!condition()) {
    if (waited.hasExpired(10000)) return testing::AssertionFailure() << "never came about";
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  }
  return testing::AssertionSuccess();
}

}  // namespace tallowin::desktop
