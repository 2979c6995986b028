// One epoll descriptor behind which all other descriptors of the program stand.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// What a descriptor is watched for. None takes it out of the watch altogether, so that a peer who
/// has hung up does not wake the program again and again.
enum class Interest : std::uint32_t { None = 0, Read = 1, Write = 4, Both = 5 };

/// What the descriptor was found ready for, out of what it is watched for. An error or a hang-up
/// counts as ready for all of that: the next call on the descriptor tells.
struct Readiness {
  bool read;
  bool write;
};

/// Level-triggered. A handler has to put up with being called for nothing, since a nested pass may
/// have done its work already.
class EventPoller {
 public:
  using Handler = std::function<void(Readiness)>;

  /// Ends when it is destroyed, which the handler may do; must happen before the descriptor is
  /// closed and before the poller is gone.
  class Watch {
   public:
    Watch(EventPoller& poller, std::uint64_t id) : poller_(poller), id_(id) {}
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { poller_.Remove(id_); }
    /// Throws like Add.
    void SetInterest(Interest interest) { poller_.SetInterest(id_, interest); }

   private:
    EventPoller& poller_;
    std::uint64_t id_;
  };

  EventPoller();

  /// Readable while any watched descriptor is ready.
  [[nodiscard]] int Descriptor() const { return epoll_.Get(); }

  /// Throws RunTimeError if the system cannot watch it: regular files, for one, are always ready.
  [[nodiscard]] std::unique_ptr<Watch> Add(int descriptor, Interest interest, Handler handler);

  /// Changes whenever something begins to be watched for, which may be ready already.
  [[nodiscard]] std::uint64_t Interests() const { return interests_; }

  /// Calls the handlers of what is ready now, a bounded number of them, for as long as `goOn` gives
  /// true. May nest.
  void Dispatch(const std::function<bool()>& goOn);

 private:
  struct Entry {
    int descriptor;
    Interest interest;
    std::shared_ptr<const Handler> handler;
  };
  void SetInterest(std::uint64_t id, Interest interest);
  void Remove(std::uint64_t id);
  void Dispatch(std::uint64_t id, std::uint32_t events);

  FileDescriptor epoll_;
  std::uint64_t lastId_ = 0;
  std::uint64_t interests_ = 0;
  std::unordered_map<std::uint64_t, Entry> entries_;
};

}  // namespace tallowin::platform::linux_host
