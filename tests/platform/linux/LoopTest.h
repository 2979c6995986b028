// A fixture with a message loop.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <chrono>
#include <functional>
#include <thread>

#include "platform/linux/LinuxEventLoop.h"

namespace tallowin::platform::linux_host {

class LoopTest : public testing::Test {
 protected:
  /// Runs passes of the loop until `done` gives true; false if that takes too long.
  [[nodiscard]] bool Until(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      loop.DoEvents();
      std::this_thread::yield();
    }
    return true;
  }

  void RunProgram(const std::function<void()>& body) {
    loop.Post(body);
    EXPECT_THROW(loop.RunUntil([] { return false; }), ProgramEnded);
  }

 private:
  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};

 protected:
  LinuxEventLoop loop;
};

}  // namespace tallowin::platform::linux_host
