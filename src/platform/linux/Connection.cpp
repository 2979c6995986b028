#include "platform/linux/Connection.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "platform/linux/SocketErrors.h"

namespace tallowin::platform::linux_host {
namespace {

/// The same call may succeed later. To be short of memory costs nobody the connection.
bool IsForNowOnly(int error) {
  return error == EAGAIN || error == EINTR || error == ENOBUFS || error == ENOMEM;
}

}  // namespace

int SendFrontOf(std::string& unsent, const FileDescriptor& socket) {
  std::size_t sent = 0;
  int error = 0;
  while (sent < unsent.size() && error == 0) {
    const ssize_t taken =
        send(socket.Get(), unsent.data() + sent, unsent.size() - sent, MSG_NOSIGNAL);
    if (taken < 0) {
      error = errno;
    } else {
      sent += static_cast<std::size_t>(taken);
    }
  }
  unsent.erase(0, sent);
  return IsForNowOnly(error) ? 0 : error;
}

Connection::Connection(EventPoller& poller, FileDescriptor socket, Events events)
    : socket_(std::move(socket)),
      events_(std::move(events)),
      watch_(
          poller.Add(socket_.Get(), Interest::Read, [this](Readiness ready) { OnReady(ready); })) {}

void Connection::Send(std::string_view data) {
  if (sendFailure_) return;
  const bool idle = unsent_.empty();
  unsent_.append(data);
  if (idle) Flush();
}

std::string Connection::Fetch() { return std::exchange(unread_, {}); }

Connection::Remains Connection::TakeApart() {
  watch_.reset();
  return {std::move(socket_), std::move(unsent_)};
}

void Connection::OnReady(Readiness ready) {
  if (ready.write) Flush();
  if (ready.read) Receive();
}

void Connection::Flush() {
  if (const int error = SendFrontOf(unsent_, socket_); error != 0) {
    // Told by Receive, when it has come to the end of what the peer sent before.
    sendFailure_ = SocketError(error);
    unsent_.clear();
  }
  UpdateInterest();
}

void Connection::UpdateInterest() {
  const bool writing = !unsent_.empty();
  watch_->SetInterest(reading_  ? (writing ? Interest::Both : Interest::Read)
                      : writing ? Interest::Write
                                : Interest::None);
}

void Connection::Receive() {
  std::array<char, kReceiveBuffer> buffer;
  const std::size_t room =
      unread_.size() < buffer.size() ? buffer.size() - unread_.size() : buffer.size();
  const ssize_t count = recv(socket_.Get(), buffer.data(), room, 0);
  if (count > 0) return Arrived({buffer.data(), static_cast<std::size_t>(count)});
  if (count == 0) return Ended();
  if (!IsForNowOnly(errno)) Failed(SocketError(errno));
}

void Connection::Arrived(std::string_view data) {
  const std::string_view kept = data.substr(0, kMostKept - unread_.size());
  if (kept.empty()) return;
  unread_.append(kept);
  const auto dataArrival = events_.dataArrival;  // The handler may destroy this object.
  dataArrival(static_cast<std::int32_t>(std::min(unread_.size(), kReceiveBuffer)));
}

void Connection::Ended() {
  if (sendFailure_) return Failed(*sendFailure_);
  reading_ = false;
  UpdateInterest();
  const auto closed = events_.closed;
  closed();
}

void Connection::Failed(const RunTimeError& error) {
  reading_ = false;
  lost_ = true;
  unsent_.clear();
  UpdateInterest();
  const auto failed = events_.failed;
  const RunTimeError copy = error;
  failed(copy);
}

}  // namespace tallowin::platform::linux_host
