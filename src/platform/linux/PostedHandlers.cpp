#include "platform/linux/PostedHandlers.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <utility>

#include "platform/linux/SocketErrors.h"

namespace tallowin::platform::linux_host {

PostedHandlers::PostedHandlers(EventPoller& poller)
    : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!wake_) throw SocketError(errno);
  // The loop looks here at the start of each pass anyway; the watch only wakes it.
  watch_ = poller.Add(wake_.Get(), Interest::Read, [](Readiness) {});
}

void PostedHandlers::Add(std::function<void()> handler) {
  const std::scoped_lock lock(mutex_);
  if (handlers_.empty()) eventfd_write(wake_.Get(), 1);
  handlers_.push_back(std::move(handler));
}

std::size_t PostedHandlers::Count() {
  const std::scoped_lock lock(mutex_);
  return handlers_.size();
}

bool PostedHandlers::Empty() { return Count() == 0; }

std::function<void()> PostedHandlers::Next() {
  const std::scoped_lock lock(mutex_);
  if (handlers_.empty()) return {};
  std::function<void()> handler = std::move(handlers_.front());
  handlers_.pop_front();
  eventfd_t ignored = 0;
  if (handlers_.empty()) eventfd_read(wake_.Get(), &ignored);
  return handler;
}

void PostedHandlers::Run(const std::function<void(const std::function<void()>&)>& run,
                         const std::function<bool()>& goOn) {
  for (std::size_t left = Count(); left > 0 && goOn(); --left) {
    const std::function<void()> handler = Next();
    if (!handler) return;
    run(handler);
  }
}

}  // namespace tallowin::platform::linux_host
