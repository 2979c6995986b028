#include "platform/linux/LinuxUdpWinsock.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/linux/Connector.h"
#include "platform/linux/SocketErrors.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kMostKept = 16;

/// Where nobody is at the port, the word of the Windows library is that of a reset.
RunTimeError DatagramError(int errnoValue) {
  return SocketError(errnoValue == ECONNREFUSED ? ECONNRESET : errnoValue);
}

}  // namespace

void LinuxUdpWinsock::SendData(std::string_view data) {
  if (!socket_) {
    FileDescriptor opened(socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!opened) throw SocketError(errno);
    socket_ = std::move(opened);
    if (Connector::IsName(remoteHost_)) {
      lookUp_ = std::make_unique<HostLookUp>(
          loop_, remoteHost_, [this](const std::string& address) { OpenTo(address); });
    }
  }
  unsent_.emplace_back(data);
  if (lookUp_) return;
  if (watch_) return SendAll();
  OpenTo(remoteHost_);
}

void LinuxUdpWinsock::OpenTo(const std::string& address) {
  const bool wasName = std::exchange(lookUp_, nullptr) != nullptr;
  const auto target = AddressOf(address, remotePort_);
  if (!target) return GiveUp(wasName ? HostNotFound() : SocketError(EADDRNOTAVAIL));
  if (connect(socket_.Get(), reinterpret_cast<const sockaddr*>(&*target), sizeof *target) != 0) {
    return GiveUp(SocketError(errno));
  }
  watch_ = loop_.Poller().Add(socket_.Get(), Interest::Read, [this](Readiness) { OnReady(); });
  SendAll();
}

void LinuxUdpWinsock::GiveUp(const RunTimeError& error) {
  socket_ = FileDescriptor();
  unsent_.clear();
  FailLater(error);
}

void LinuxUdpWinsock::SendAll() {
  for (const auto& datagram : std::exchange(unsent_, {})) {
    const auto sent = send(socket_.Get(), datagram.data(), datagram.size(), MSG_NOSIGNAL);
    if (sent < 0) FailLater(DatagramError(errno));
  }
}

void LinuxUdpWinsock::OnReady() {
  std::array<char, kLongestDatagram> bytes = {};
  // The length comes whole, also where the bytes are cut.
  const auto length = recv(socket_.Get(), bytes.data(), bytes.size(), MSG_TRUNC);
  if (length < 0) {
    if (errno != EAGAIN && errno != EINTR) Fail(DatagramError(errno));
  } else if (static_cast<std::size_t>(length) > bytes.size()) {
    Fail(SocketError(EMSGSIZE));
  } else {
    Arrived({bytes.data(), static_cast<std::size_t>(length)});
  }
}

void LinuxUdpWinsock::Arrived(std::string datagram) {
  if (unread_.size() >= kMostKept) return;
  unread_.push_back(std::move(datagram));
  const auto handler = events_.DataArrival;
  const auto size = static_cast<std::int32_t>(unread_.back().size());
  if (handler) loop_.Deliver([&] { handler(size); });
}

void LinuxUdpWinsock::FailLater(const RunTimeError& error) {
  loop_.Post([this, alive = std::weak_ptr(alive_), error] {
    if (!alive.expired()) Fail(error);
  });
}

void LinuxUdpWinsock::Fail(const RunTimeError& error) {
  const auto handler = events_.Error;
  if (handler) loop_.Deliver([&] { handler(error.Number(), error.Description()); });
}

std::string LinuxUdpWinsock::GetData() {
  if (unread_.empty()) return {};
  std::string datagram = std::move(unread_.front());
  unread_.pop_front();
  return datagram;
}

void LinuxUdpWinsock::Close() {
  alive_ = std::make_shared<const bool>(true);
  lookUp_.reset();
  watch_.reset();
  socket_ = FileDescriptor();
  unsent_.clear();
  unread_.clear();
}

}  // namespace tallowin::platform::linux_host
