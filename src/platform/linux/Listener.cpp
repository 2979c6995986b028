#include "platform/linux/Listener.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "platform/linux/SocketErrors.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;

constexpr auto kPauseWhenShort = 100ms;

/// The caller has gone, or the network has told of a fault of that one caller.
bool ConcernsThisCallerOnly(int error) {
  static constexpr std::array kErrors{EAGAIN,      EINTR,     ECONNABORTED, EPROTO,
                                      ENOPROTOOPT, EHOSTDOWN, ENONET,       EHOSTUNREACH,
                                      EOPNOTSUPP,  ENETDOWN,  ENETUNREACH,  EPERM};
  return std::ranges::find(kErrors, error) != kErrors.end();
}

bool IsShortage(int error) {
  return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

}  // namespace

FileDescriptor OpenListeningSocket(int port, const PrivilegedHelper* helper) {
  FileDescriptor socket = OpenTcpSocket();
  int error = TryToBind(socket, port);
  if (error == EACCES && helper != nullptr) {
    auto helped = helper->BindTcp(port);
    if (helped.error == EADDRINUSE) error = helped.error;
    if (helped.socket) {
      socket = std::move(helped.socket);
      error = 0;
    }
  }
  if (error != 0) throw SocketError(error);
  // Callers inherit this, and so are reset by whatever closes them unaccepted.
  SetResetOnClose(socket, true);
  if (listen(socket.Get(), SOMAXCONN) != 0) throw SocketError(errno);
  return socket;
}

Listener::Listener(LinuxEventLoop& loop, FileDescriptor socket, Events events)
    : loop_(loop),
      socket_(std::move(socket)),
      events_(std::move(events)),
      watch_(
          loop.Poller().Add(socket_.Get(), Interest::Read, [this](Readiness) { TakeCaller(); })) {}

int Listener::Port() const { return LocalPortOf(socket_); }

FileDescriptor Listener::Release() {
  watch_.reset();
  return std::move(socket_);
}

void Listener::TakeCaller() {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  FileDescriptor socket(accept4(socket_.Get(), reinterpret_cast<sockaddr*>(&address), &size,
                                SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!socket) return NoCaller(errno);
  const auto onCaller = events_.caller;  // The handler may destroy this object.
  onCaller({std::move(socket), DottedAddress(address), PortOf(address)});
}

void Listener::NoCaller(int error) {
  if (ConcernsThisCallerOnly(error)) return;
  if (IsShortage(error)) {
    Pause();
    events_.runningShort();
    return;
  }
  watch_->SetInterest(Interest::None);
  const auto failed = events_.failed;
  failed(SocketError(error));
}

/// Callers wait in the system's queue; to look again at once would only burn time.
void Listener::Pause() {
  watch_->SetInterest(Interest::None);
  if (!pause_) pause_ = loop_.MakeTimer(kPauseWhenShort, [this] { Resume(); });
  pause_->SetEnabled(true);
}

void Listener::Resume() {
  try {
    watch_->SetInterest(Interest::Read);
    pause_->SetEnabled(false);
  } catch (const RunTimeError&) {
    // Still short; the next tick tries again.
  }
}

}  // namespace tallowin::platform::linux_host
