#include "platform/linux/Connector.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/linux/SocketErrors.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host {

Connector::Connector(LinuxEventLoop& loop, int localPort, std::string host, int port, Events events)
    : loop_(loop),
      host_(std::move(host)),
      port_(port),
      events_(std::move(events)),
      socket_(OpenTcpSocket()) {
  if (localPort != 0) BindToPort(socket_, localPort);
  if (IsName(host_)) {
    LookUp();
  } else {
    ConnectTo(host_);
  }
}

Connector::~Connector() = default;

bool Connector::IsName(const std::string& host) {
  return !host.empty() && !AddressOf(host, 0).has_value();
}

void Connector::Later(std::function<void()> handler) {
  loop_.Post([alive = std::weak_ptr(alive_), handler = std::move(handler)] {
    if (!alive.expired()) handler();
  });
}

void Connector::LookUp() {
  lookUp_ = std::make_unique<HostLookUp>(
      loop_, host_, [this](const std::string& address) { TakeAddress(address); });
}

void Connector::TakeAddress(const std::string& address) {
  if (address.empty()) return Fail(HostNotFound());
  const std::weak_ptr<const bool> alive = alive_;
  const auto connecting = events_.connecting;
  connecting();
  if (alive.expired()) return;
  try {
    ConnectTo(address);
  } catch (const RunTimeError& error) {
    FailLater(error);
  }
}

void Connector::ConnectTo(const std::string& address) {
  const auto target = AddressOf(address, port_);
  // The system would take the empty address for this machine, and port 0 for a port.
  if (!target || target->sin_addr.s_addr == INADDR_ANY || port_ == 0) {
    return FailLater(SocketError(EADDRNOTAVAIL));
  }
  address_ = address;
  const int result =
      connect(socket_.Get(), reinterpret_cast<const sockaddr*>(&*target), sizeof *target);
  if (result != 0 && errno != EINPROGRESS) return FailLater(SocketError(errno));
  watch_ = loop_.Poller().Add(socket_.Get(), Interest::Write, [this](Readiness) { OnReady(); });
}

void Connector::OnReady() {
  int error = 0;
  socklen_t size = sizeof error;
  getsockopt(socket_.Get(), SOL_SOCKET, SO_ERROR, &error, &size);
  watch_.reset();
  if (error != 0) return Fail(SocketError(error));
  const auto connected = events_.connected;
  connected(std::move(socket_), std::move(address_));
}

void Connector::FailLater(const RunTimeError& error) {
  Later([this, error] { Fail(error); });
}

void Connector::Fail(const RunTimeError& error) {
  const auto failed = events_.failed;
  failed(error);
}

}  // namespace tallowin::platform::linux_host
