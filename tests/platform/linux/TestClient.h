// A plain client on the loopback, to see what a caller sees.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

class TestClient {
 public:
  static constexpr int kOpen = -1;

  explicit TestClient(int port, const char* from = "127.0.0.1")
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const sockaddr_in source = Address(from, 0);
    EXPECT_EQ(bind(socket_.Get(), reinterpret_cast<const sockaddr*>(&source), sizeof source), 0);
    const sockaddr_in target = Address("127.0.0.1", port);
    if (connect(socket_.Get(), reinterpret_cast<const sockaddr*>(&target), sizeof target) != 0) {
      end_ = errno;
    }
  }

  void Send(std::string_view data) {
    send(socket_.Get(), data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  }

  /// Reads what is there; true once the connection is over.
  bool Over() {
    char buffer[65536];
    while (end_ == kOpen) {
      const ssize_t count = recv(socket_.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
      if (count > 0) {
        received_.append(buffer, static_cast<std::size_t>(count));
      } else if (count == 0) {
        end_ = 0;
      } else if (errno == EAGAIN) {
        return false;
      } else {
        end_ = errno;
      }
    }
    return true;
  }

  [[nodiscard]] const std::string& Received() const { return received_; }
  /// kOpen, 0 after a polite end, otherwise the error.
  [[nodiscard]] int End() const { return end_; }

  void EndSending() { shutdown(socket_.Get(), SHUT_WR); }
  void Close() { socket_ = FileDescriptor(); }
  void Reset() {
    const linger now{1, 0};
    setsockopt(socket_.Get(), SOL_SOCKET, SO_LINGER, &now, sizeof now);
    Close();
  }

 private:
  static sockaddr_in Address(const char* dotted, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    inet_pton(AF_INET, dotted, &address.sin_addr);
    return address;
  }

  FileDescriptor socket_;
  std::string received_;
  int end_ = kOpen;
};

}  // namespace tallowin::platform::linux_host
