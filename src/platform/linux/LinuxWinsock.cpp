#include "platform/linux/LinuxWinsock.h"

#include <cerrno>
#include <optional>
#include <type_traits>
#include <utility>

#include "platform/linux/Connection.h"
#include "platform/linux/Connector.h"
#include "platform/linux/LinuxUdpWinsock.h"
#include "platform/linux/Listener.h"
#include "platform/linux/SocketErrors.h"
#include "platform/linux/SocketServices.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host {
namespace {

bool IsPort(int number) { return number >= 0 && number <= 65535; }

class LinuxWinsock final : public Winsock {
 public:
  explicit LinuxWinsock(std::shared_ptr<SocketServices> services)
      : services_(std::move(services)) {}
  LinuxWinsock(const LinuxWinsock&) = delete;
  LinuxWinsock& operator=(const LinuxWinsock&) = delete;
  ~LinuxWinsock() override;

  void SetEvents(SocketEvents events) override { events_ = std::move(events); }
  [[nodiscard]] SocketState State() const override { return state_; }
  [[nodiscard]] int LocalPort() const override { return portInUse_.value_or(localPort_); }
  void SetLocalPort(int port) override;
  [[nodiscard]] int RemotePort() const override { return remotePort_; }
  void SetRemotePort(int port) override;
  [[nodiscard]] std::string RemoteHost() const override { return remoteHost_; }
  void SetRemoteHost(std::string host) override { remoteHost_ = std::move(host); }
  [[nodiscard]] std::string RemoteHostIP() const override { return remoteHostIP_; }

  void Listen() override;
  void Accept(std::int32_t requestID) override;
  void Connect() override;
  void SendData(std::string_view data) override;
  std::string GetData() override;
  void Close() override;

 private:
  void OnCaller(Caller caller);
  void DoomCallers();
  void StopListening();
  void TakeOver(FileDescriptor socket, std::string address, int port);
  void OnConnected(FileDescriptor socket, std::string address);
  void OnClosed();
  void OnLost(const RunTimeError& error);
  void OnListeningFailed(const RunTimeError& error);
  void OnFailed(const RunTimeError& error);

  /// Raises an event; false if the handler has destroyed this socket.
  template <typename... Args>
  bool Raise(std::function<void(Args...)> handler, std::type_identity_t<Args>... args) {
    const std::weak_ptr<const bool> alive = alive_;
    if (handler) services_->loop.Deliver([&] { handler(args...); });
    return !alive.expired();
  }

  std::shared_ptr<SocketServices> services_;
  SocketEvents events_;
  SocketState state_ = SocketState::Closed;
  // Three, as SetLocalPort works at any time: asked for now, asked for at the Listen, and in use.
  int localPort_ = 0;
  int listeningPort_ = 0;
  std::optional<int> portInUse_;
  int remotePort_ = 0;
  std::string remoteHost_;
  std::string remoteHostIP_;
  int requestsUnderWay_ = 0;
  std::unique_ptr<Listener> listener_;
  std::unique_ptr<Connector> connector_;
  std::unique_ptr<Connection> connection_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

LinuxWinsock::~LinuxWinsock() {
  services_->callers.Reset(this);
  services_->parked.Drop(this);
}

void LinuxWinsock::SetLocalPort(int port) {
  if (port != localPort_) services_->parked.Drop(this);
  localPort_ = port;
}

void LinuxWinsock::SetRemotePort(int port) {
  if (!IsPort(port)) throw RunTimeError(error::kInvalidPropertyValue, "Invalid property value");
  remotePort_ = port;
}

void LinuxWinsock::Listen() {
  if (state_ != SocketState::Closed) throw SocketError(EINVAL);
  if (!IsPort(localPort_)) throw SocketError(EADDRNOTAVAIL);
  services_->callers.ResetDoomed();
  FileDescriptor socket = services_->parked.TakeBack(this, localPort_);
  if (!socket) socket = OpenListeningSocket(localPort_, services_->helper);
  listener_ = std::make_unique<Listener>(
      services_->loop, std::move(socket),
      Listener::Events{[this](Caller caller) { OnCaller(std::move(caller)); },
                       [this] { services_->MakeRoom(); },
                       [this](const RunTimeError& error) { OnListeningFailed(error); }});
  listeningPort_ = localPort_;
  portInUse_ = listener_->Port();
  state_ = SocketState::Listening;
}

void LinuxWinsock::OnCaller(Caller caller) {
  const std::string outerAddress = std::exchange(remoteHostIP_, caller.address);
  const int outerPort = std::exchange(remotePort_, caller.port);
  const std::int32_t requestID = services_->callers.Hold(this, std::move(caller));

  ++requestsUnderWay_;
  if (!Raise(events_.ConnectionRequest, requestID)) return;
  --requestsUnderWay_;
  services_->callers.Handled(requestID);

  // The handler of an earlier caller goes on, and finds its own caller's address again; unless the
  // socket has become a connection, which has a peer of its own.
  if (requestsUnderWay_ == 0 || connection_ || connector_) return;
  remoteHostIP_ = outerAddress;
  remotePort_ = outerPort;
}

void LinuxWinsock::Accept(std::int32_t requestID) {
  std::optional<Caller> caller = services_->callers.Take(requestID);
  if (!caller) throw SocketError(EINVAL);
  if (state_ != SocketState::Closed) throw SocketError(EISCONN);
  services_->parked.Drop(this);
  SetResetOnClose(caller->socket, false);
  TakeOver(std::move(caller->socket), std::move(caller->address), caller->port);
}

void LinuxWinsock::TakeOver(FileDescriptor socket, std::string address, int port) {
  const int localPort = LocalPortOf(socket);
  connection_ = std::make_unique<Connection>(
      services_->loop.Poller(), std::move(socket),
      Connection::Events{[this](std::int32_t bytes) { Raise(events_.DataArrival, bytes); },
                         [this] { OnClosed(); },
                         [this](const RunTimeError& error) { OnLost(error); }});
  portInUse_ = localPort;
  remoteHostIP_ = std::move(address);
  remotePort_ = port;
  state_ = SocketState::Connected;
}

void LinuxWinsock::Connect() {
  if (state_ != SocketState::Closed) throw SocketError(EINVAL);
  if (!IsPort(localPort_)) throw SocketError(EADDRNOTAVAIL);
  services_->parked.Drop(this);
  connector_ = std::make_unique<Connector>(
      services_->loop, localPort_, remoteHost_, remotePort_,
      Connector::Events{[this] { state_ = SocketState::Connecting; },
                        [this](FileDescriptor socket, std::string address) {
                          OnConnected(std::move(socket), std::move(address));
                        },
                        [this](const RunTimeError& error) { OnFailed(error); }});
  state_ = Connector::IsName(remoteHost_) ? SocketState::ResolvingHost : SocketState::Connecting;
}

void LinuxWinsock::OnConnected(FileDescriptor socket, std::string address) {
  connector_.reset();
  try {
    TakeOver(std::move(socket), std::move(address), remotePort_);
  } catch (const RunTimeError& error) {
    return OnFailed(error);  // Nobody has called this who could be told otherwise.
  }
  Raise(events_.Connect);
}

void LinuxWinsock::OnClosed() {
  state_ = SocketState::Closing;
  Raise(events_.Close);
}

void LinuxWinsock::OnLost(const RunTimeError& error) {
  state_ = SocketState::Error;
  if (!Raise(events_.Error, error.Number(), error.Description())) return;
  // The handler may have closed the socket, and used it anew.
  if (connection_ && state_ == SocketState::Error) OnClosed();
}

void LinuxWinsock::OnListeningFailed(const RunTimeError& error) {
  listener_.reset();  // Not to be parked: the next Listen needs a sound one.
  OnFailed(error);
}

void LinuxWinsock::OnFailed(const RunTimeError& error) {
  state_ = SocketState::Error;
  Raise(events_.Error, error.Number(), error.Description());
}

void LinuxWinsock::SendData(std::string_view data) {
  if (!connection_ || connection_->Lost()) throw SocketError(ENOTCONN);
  connection_->Send(data);
}

std::string LinuxWinsock::GetData() { return connection_ ? connection_->Fetch() : std::string(); }

void LinuxWinsock::Close() {
  DoomCallers();
  if (listener_) StopListening();
  connector_.reset();
  if (connection_ && !connection_->Lost()) {
    Connection::Remains remains = connection_->TakeApart();
    services_->lingering.SeeOff(std::move(remains.socket), std::move(remains.unsent));
  }
  connection_.reset();
  portInUse_.reset();
  state_ = SocketState::Closed;
}

void LinuxWinsock::DoomCallers() {
  if (!services_->callers.Doom(this)) return;
  services_->loop.Post([weak = std::weak_ptr(services_)] {
    if (const auto services = weak.lock()) services->callers.ResetDoomed();
  });
}

void LinuxWinsock::StopListening() {
  services_->parked.Park(this, listeningPort_, *portInUse_, listener_->Release());
  listener_.reset();
}

}  // namespace

LinuxSocketFactory::LinuxSocketFactory(LinuxEventLoop& loop, const PrivilegedHelper* helper)
    : services_(std::make_shared<SocketServices>(loop, helper)) {}

std::unique_ptr<Winsock> LinuxSocketFactory::MakeWinsock() {
  return std::make_unique<LinuxWinsock>(services_);
}

std::unique_ptr<UdpWinsock> LinuxSocketFactory::MakeUdpWinsock() {
  return std::make_unique<LinuxUdpWinsock>(services_->loop);
}

}  // namespace tallowin::platform::linux_host
