// Handlers that wait for the next pass of the loop, posted from any thread.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/linux/EventPoller.h"

namespace tallowin::platform::linux_host {

class PostedHandlers {
 public:
  /// Wakes `poller` while handlers wait.
  explicit PostedHandlers(EventPoller& poller);

  /// Thread-safe.
  void Add(std::function<void()> handler);
  [[nodiscard]] bool Empty();

  /// Hands those that wait now to `run`, in order, for as long as `goOn` gives true. A nested call
  /// takes up where this one stands.
  void Run(const std::function<void(const std::function<void()>&)>& run,
           const std::function<bool()>& goOn);

 private:
  [[nodiscard]] std::size_t Count();
  [[nodiscard]] std::function<void()> Next();

  FileDescriptor wake_;
  std::unique_ptr<EventPoller::Watch> watch_;
  std::mutex mutex_;
  std::deque<std::function<void()>> handlers_;
};

}  // namespace tallowin::platform::linux_host
