// A connected TCP stream: bytes in, bytes out, and how it ends.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/RunTimeError.h"
#include "platform/linux/EventPoller.h"

namespace tallowin::platform::linux_host {

/// Reads on when nobody fetches, so that the end of the stream is noticed all the same: up to
/// kMostKept bytes are kept then, the rest is dropped.
class Connection {
 public:
  static constexpr std::size_t kReceiveBuffer = 8192;
  static constexpr std::size_t kMostKept = 65536;

  /// Each may destroy the connection. After `closed` or `failed` none follows.
  struct Events {
    std::function<void(std::int32_t bytes)> dataArrival;
    std::function<void()> closed;
    std::function<void(const RunTimeError&)> failed;
  };

  Connection(EventPoller& poller, FileDescriptor socket, Events events);

  /// Sends what the peer takes and queues the rest, also behind `closed`. A failure comes as an
  /// event, behind the data that the peer sent before it; behind `closed` it is not told any more.
  void Send(std::string_view data);

  /// True once `failed` has been raised: there is no connection any more.
  [[nodiscard]] bool Lost() const { return lost_; }

  /// All bytes that have come in and are not fetched yet.
  [[nodiscard]] std::string Fetch();

  struct Remains {
    FileDescriptor socket;
    std::string unsent;
  };
  /// Ends the watch; the connection is not to be used any more.
  [[nodiscard]] Remains TakeApart();

 private:
  void OnReady(Readiness ready);
  void Receive();
  void Arrived(std::string_view data);
  void Ended();
  void Failed(const RunTimeError& error);
  void Flush();
  void UpdateInterest();

  FileDescriptor socket_;
  Events events_;
  std::string unread_;
  std::string unsent_;
  std::optional<RunTimeError> sendFailure_;
  bool reading_ = true;
  bool lost_ = false;
  std::unique_ptr<EventPoller::Watch> watch_;
};

/// Sends the front of `unsent` and takes it off; an error number, or 0 (also if the peer takes
/// nothing now).
[[nodiscard]] int SendFrontOf(std::string& unsent, const FileDescriptor& socket);

}  // namespace tallowin::platform::linux_host
