#include "platform/linux/LockPatience.h"

#include <thread>

namespace tallowin::platform::linux_host {
namespace {

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kRetry{2};
constexpr std::chrono::seconds kRenewal{1};

}  // namespace

bool LockPatience::Wait(int earlierCalls) {
  const auto now = Clock::now();
  if (now < noWaitBefore_) return false;
  if (earlierCalls == 0) deadline_ = now + kPatience;
  if (now >= deadline_) {
    noWaitBefore_ = now + kRenewal;
    return false;
  }
  std::this_thread::sleep_for(kRetry);
  return true;
}

}  // namespace tallowin::platform::linux_host
