#include "platform/linux/PendingCallers.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tallowin::platform::linux_host {

std::int32_t PendingCallers::Hold(Owner owner, Caller caller) {
  lastRequestID_ =
      lastRequestID_ == std::numeric_limits<std::int32_t>::max() ? 1 : lastRequestID_ + 1;
  entries_.push_back({lastRequestID_, owner, false, false, std::move(caller)});
  ResetExcess(owner);
  return lastRequestID_;
}

void PendingCallers::ResetExcess(Owner owner) {
  const auto ofOwner = [owner](const Entry& entry) { return entry.owner == owner; };
  if (std::ranges::count_if(entries_, ofOwner) <= std::ptrdiff_t{kHeldForEachOwner}) return;
  entries_.erase(std::ranges::find_if(entries_, ofOwner));
}

void PendingCallers::Handled(std::int32_t requestID) {
  const auto found = std::ranges::find(entries_, requestID, &Entry::requestID);
  if (found != entries_.end()) found->handled = true;
}

bool PendingCallers::ResetOldestHandled() {
  const auto found = std::ranges::find(entries_, true, &Entry::handled);
  if (found == entries_.end()) return false;
  entries_.erase(found);
  return true;
}

std::optional<Caller> PendingCallers::Take(std::int32_t requestID) {
  const auto found = std::ranges::find(entries_, requestID, &Entry::requestID);
  if (found == entries_.end()) return std::nullopt;
  Caller caller = std::move(found->caller);
  entries_.erase(found);
  return caller;
}

bool PendingCallers::Doom(Owner owner) {
  bool any = false;
  for (Entry& entry : entries_) {
    if (entry.owner == owner) any = entry.doomed = true;
  }
  return any;
}

void PendingCallers::ResetDoomed() {
  entries_.remove_if([](const Entry& entry) { return entry.doomed; });
}

void PendingCallers::Reset(Owner owner) {
  entries_.remove_if([owner](const Entry& entry) { return entry.owner == owner; });
}

}  // namespace tallowin::platform::linux_host
