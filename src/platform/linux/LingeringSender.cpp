#include "platform/linux/LingeringSender.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/linux/Connection.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMostFarewells = 64;
constexpr auto kTimeToSend = 10s;
constexpr auto kTimeToHearTheEnd = 2s;
constexpr auto kLookInterval = 500ms;
constexpr std::size_t kMostReadAway = std::size_t{1} << 20U;

}  // namespace

struct LingeringSender::Farewell {
  FileDescriptor socket;
  std::string unsent;
  Clock::time_point until;
  std::size_t readAway = 0;
  bool peerEnded = false;
  bool broken = false;
  std::unique_ptr<EventPoller::Watch> watch = {};

  /// A cut text is to be seen as such, not as a polite end.
  void GiveUp() const {
    if (!unsent.empty()) SetResetOnClose(socket, true);
  }

  [[nodiscard]] bool Over() const { return broken || (unsent.empty() && peerEnded); }

  void Send() {
    if (SendFrontOf(unsent, socket) != 0) {
      broken = true;
    } else if (unsent.empty()) {
      SayEnd();
    }
  }

  void SayEnd() {
    shutdown(socket.Get(), SHUT_WR);
    until = Clock::now() + kTimeToHearTheEnd;
  }

  void ReadAway() {
    std::array<char, 16384> buffer;
    const ssize_t count = recv(socket.Get(), buffer.data(), buffer.size(), 0);
    if (count > 0) {
      readAway += static_cast<std::size_t>(count);
      broken = readAway > kMostReadAway;
    } else if (count == 0) {
      peerEnded = true;
    } else {
      broken = errno != EAGAIN && errno != EINTR;
    }
  }

  void UpdateInterest() {
    watch->SetInterest(unsent.empty() ? Interest::Read
                       : peerEnded    ? Interest::Write
                                      : Interest::Both);
  }
};

LingeringSender::LingeringSender(EventLoop& loop, EventPoller& poller)
    : poller_(poller), timer_(loop.MakeTimer(kLookInterval, [this] { DropOverdue(); })) {}

LingeringSender::~LingeringSender() = default;

void LingeringSender::SeeOff(FileDescriptor socket, std::string unsent) {
  Farewell farewell{std::move(socket), std::move(unsent), Clock::now() + kTimeToSend};
  if (farewell.unsent.empty()) farewell.SayEnd();
  // Most callers have sent nothing or have ended already, and need no watch.
  farewell.ReadAway();
  if (farewell.Over()) return;

  MakeRoom();
  farewells_.push_back(std::move(farewell));
  const auto place = std::prev(farewells_.end());
  try {
    place->watch = poller_.Add(place->socket.Get(), Interest::None,
                               [this, place](Readiness ready) { OnReady(place, ready); });
    place->UpdateInterest();
  } catch (const RunTimeError&) {
    farewells_.erase(place);  // The system is short of memory, and a close must not fail.
    return;
  }
  timer_->SetEnabled(true);
}

void LingeringSender::OnReady(Farewells::iterator farewell, Readiness ready) {
  if (ready.write) farewell->Send();
  if (ready.read) farewell->ReadAway();
  if (farewell->Over()) {
    farewells_.erase(farewell);
  } else {
    farewell->UpdateInterest();
  }
}

void LingeringSender::MakeRoom() {
  if (farewells_.size() >= kMostFarewells) DropOldest();
}

void LingeringSender::DropOldest() {
  if (farewells_.empty()) return;
  farewells_.front().GiveUp();
  farewells_.pop_front();
}

void LingeringSender::DropOverdue() {
  const auto now = Clock::now();
  farewells_.remove_if([now](const Farewell& farewell) {
    if (farewell.until > now) return false;
    farewell.GiveUp();
    return true;
  });
  if (farewells_.empty()) timer_->SetEnabled(false);
}

}  // namespace tallowin::platform::linux_host
