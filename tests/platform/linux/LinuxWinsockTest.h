// A fixture with a listening socket and another one.
#pragma once

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <memory>

#include "LoopTest.h"
#include "TestClient.h"
#include "platform/linux/LinuxWinsock.h"
#include "support/ErrorOf.h"

namespace tallowin::platform::linux_host {

using tallowin::test::ErrorOf;

class LinuxWinsockTest : public LoopTest {
 protected:
  void Listen(std::function<void(std::int32_t)> onCaller) {
    listener->SetEvents({.ConnectionRequest = std::move(onCaller)});
    // Tests run beside this one. Below the ports that the system gives to callers, and off those of
    // other processes, a port that is closed for a moment stays free, and nobody calls by accident.
    for (int candidate = kFirstPort + getpid() % kPorts; port == 0; ++candidate) {
      listener->SetLocalPort(candidate);
      const int error = ErrorOf([&] { listener->Listen(); });
      ASSERT_THAT(error, testing::AnyOf(0, kPortInUse));
      if (error == 0) port = candidate;
    }
  }

  bool AllOver(std::deque<TestClient>& clients) {
    return Until([&] { return std::ranges::all_of(clients, &TestClient::Over); });
  }

  static constexpr int kFirstPort = 2000;
  static constexpr int kPorts = 8000;
  static constexpr int kPortInUse = 10048;

  LinuxSocketFactory factory{loop};
  std::unique_ptr<Winsock> listener = factory.MakeWinsock();
  std::unique_ptr<Winsock> socket = factory.MakeWinsock();
  int port = 0;
};

}  // namespace tallowin::platform::linux_host
