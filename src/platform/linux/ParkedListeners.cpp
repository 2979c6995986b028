#include "platform/linux/ParkedListeners.h"

#include <algorithm>
#include <utility>

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;

constexpr auto kParkingTime = 250ms;
constexpr auto kLookInterval = 50ms;

}  // namespace

ParkedListeners::ParkedListeners(LinuxEventLoop& loop)
    : loop_(loop), timer_(loop.MakeTimer(kLookInterval, [this] { DropOverdue(); })) {}

void ParkedListeners::Park(Owner owner, int portAskedFor, int portInUse, FileDescriptor socket) {
  entries_.push_back({owner, portAskedFor, portInUse, std::move(socket),
                      Clock::now() + kParkingTime, loop_.Nesting()});
  timer_->SetEnabled(true);
}

FileDescriptor ParkedListeners::TakeBack(Owner owner, int port) {
  const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) {
    return port == 0 ? entry.owner == owner && entry.portAskedFor == 0 : entry.portInUse == port;
  });
  if (found == entries_.end()) return FileDescriptor();
  FileDescriptor socket = std::move(found->socket);
  entries_.erase(found);
  return socket;
}

void ParkedListeners::Drop(Owner owner) {
  entries_.remove_if([owner](const Entry& entry) { return entry.owner == owner; });
}

void ParkedListeners::DropOverdue() {
  entries_.remove_if([now = Clock::now(), nesting = loop_.Nesting()](const Entry& entry) {
    return entry.until <= now && nesting <= entry.nesting;
  });
  // Stopped here and not at each TakeBack, so that a flood of refusals does not pay for it.
  if (entries_.empty()) timer_->SetEnabled(false);
}

}  // namespace tallowin::platform::linux_host
