#include "platform/linux/TerminationSignals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>

#include "platform/linux/SocketErrors.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler has no argument to carry an object, so these are the only variables of the
// process as a whole. The value is a descriptor and 1, so that 0 is a free place.
std::array<std::atomic<int>, 16> wakeDescriptors;
std::atomic<pid_t> owner;
std::array<struct sigaction, kSignals.size()> formerActions;

void OnSignal(int) {
  const int error = errno;
  // A child between fork and exec still has this handler, and must not wake its parent.
  if (getpid() == owner) {
    for (const std::atomic<int>& place : wakeDescriptors) {
      if (const int descriptor = place; descriptor > 0) eventfd_write(descriptor - 1, 1);
    }
  }
  errno = error;
}

std::atomic<int>* FindPlace(int value) {
  const auto place =
      std::ranges::find_if(wakeDescriptors, [value](const auto& each) { return each == value; });
  return place == wakeDescriptors.end() ? nullptr : &*place;
}

bool NobodyWaits() {
  return std::ranges::all_of(wakeDescriptors, [](const auto& place) { return place == 0; });
}

void Catch(std::size_t index) {
  sigaction(kSignals[index], nullptr, &formerActions[index]);
  if (kSignals[index] == SIGHUP && formerActions[index].sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  sigaction(kSignals[index], &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals(EventPoller& poller, std::function<void()> requested)
    : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!wake_) throw SocketError(errno);
  watch_ = poller.Add(wake_.Get(), Interest::Read,
                      [descriptor = wake_.Get(), requested = std::move(requested)](Readiness) {
                        eventfd_t ignored = 0;
                        if (eventfd_read(descriptor, &ignored) == 0) requested();
                      });
  const bool first = NobodyWaits();
  owner = getpid();
  std::atomic<int>* const place = FindPlace(0);
  if (place == nullptr) throw SocketError(EMFILE);
  *place = wake_.Get() + 1;
  if (!first) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) Catch(i);
}

TerminationSignals::~TerminationSignals() {
  *FindPlace(wake_.Get() + 1) = 0;
  if (!NobodyWaits()) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &formerActions[i], nullptr);
  }
}

void PassOverBrokenPipes() {
  struct sigaction former {};
  sigaction(SIGPIPE, nullptr, &former);
  if (former.sa_handler != SIG_DFL) return;
  struct sigaction action {};
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  sigaction(SIGPIPE, &action, nullptr);
}

}  // namespace tallowin::platform::linux_host
