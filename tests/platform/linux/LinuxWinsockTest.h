// A fixture with a listening socket and another one.
#pragma once

#include <algorithm>
#include <deque>
#include <memory>

#include "LoopTest.h"
#include "TestClient.h"
#include "platform/linux/LinuxWinsock.h"

namespace tallowin::platform::linux_host {

class LinuxWinsockTest : public LoopTest {
 protected:
  void Listen(std::function<void(std::int32_t)> onCaller) {
    listener->SetEvents({.ConnectionRequest = std::move(onCaller)});
    listener->Listen();
    port = listener->LocalPort();
    listener->SetLocalPort(port);
  }

  bool AllOver(std::deque<TestClient>& clients) {
    return Until([&] { return std::ranges::all_of(clients, &TestClient::Over); });
  }

  template <typename Call>
  static int ErrorOf(Call call) {
    try {
      call();
    } catch (const RunTimeError& error) {
      return error.Number();
    }
    return 0;
  }

  LinuxSocketFactory factory{loop};
  std::unique_ptr<Winsock> listener = factory.MakeWinsock();
  std::unique_ptr<Winsock> socket = factory.MakeWinsock();
  int port = 0;
};

}  // namespace tallowin::platform::linux_host
