// A server on the loopback for a client that keeps the thread of its test busy.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host::test {

class LoopbackServer {
 public:
  /// `serve` gets each caller on another thread, and returns soon once `Readable` gives false.
  explicit LoopbackServer(std::function<void(int caller)> serve) {
    auto address = *AddressOf("127.0.0.1", 0);
    EXPECT_EQ(bind(listener_.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener_.Get(), 8), 0);
    thread_ = std::thread([this, serve = std::move(serve)] {
      while (Readable(listener_.Get())) {
        const FileDescriptor caller(accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
        ++callers;
        serve(caller.Get());
      }
    });
  }
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer() { End(); }
  void End() {
    over_ = true;
    if (thread_.joinable()) thread_.join();
  }

  [[nodiscard]] std::string Address() const {
    return "127.0.0.1:" + std::to_string(LocalPortOf(listener_));
  }
  /// Waits; false once the server is to end.
  [[nodiscard]] bool Readable(int descriptor) const {
    while (!over_) {
      pollfd wait{descriptor, POLLIN, 0};
      if (poll(&wait, 1, 10) > 0) return true;
    }
    return false;
  }
  /// Appends what comes next; false at the end of the caller or of the server.
  bool Receive(int caller, std::string& to) const {
    char buffer[4096];
    if (!Readable(caller)) return false;
    const ssize_t length = recv(caller, buffer, sizeof buffer, 0);
    if (length > 0) to.append(buffer, static_cast<std::size_t>(length));
    return length > 0;
  }
  std::atomic<int> callers = 0;

 private:
  FileDescriptor listener_{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
  std::atomic<bool> over_ = false;
  std::thread thread_;
};

}  // namespace tallowin::platform::linux_host::test
