#include "platform/linux/EventPoller.h"

#include <sys/epoll.h>

#include <array>
#include <cerrno>

#include "platform/linux/SocketErrors.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::size_t kEventsInOnePass = 64;

static_assert(static_cast<std::uint32_t>(Interest::Read) == EPOLLIN);
static_assert(static_cast<std::uint32_t>(Interest::Write) == EPOLLOUT);

bool Includes(Interest interest, Interest part) {
  return (static_cast<std::uint32_t>(interest) & static_cast<std::uint32_t>(part)) != 0;
}

void Control(int epoll, int operation, int descriptor, std::uint64_t id, Interest interest) {
  epoll_event event{};
  event.events = static_cast<std::uint32_t>(interest);
  event.data.u64 = id;
  if (epoll_ctl(epoll, operation, descriptor, &event) != 0) throw SocketError(errno);
}

}  // namespace

EventPoller::EventPoller() : epoll_(epoll_create1(EPOLL_CLOEXEC)) {
  if (!epoll_) throw SocketError(errno);
}

std::unique_ptr<EventPoller::Watch> EventPoller::Add(int descriptor, Interest interest,
                                                     Handler handler) {
  const std::uint64_t id = ++lastId_;
  ++interests_;
  if (interest != Interest::None) Control(Descriptor(), EPOLL_CTL_ADD, descriptor, id, interest);
  entries_.emplace(
      id, Entry{descriptor, interest, std::make_shared<const Handler>(std::move(handler))});
  return std::make_unique<Watch>(*this, id);
}

void EventPoller::SetInterest(std::uint64_t id, Interest interest) {
  Entry& entry = entries_.at(id);
  if (entry.interest == interest) return;
  const int operation = interest == Interest::None         ? EPOLL_CTL_DEL
                        : entry.interest == Interest::None ? EPOLL_CTL_ADD
                                                           : EPOLL_CTL_MOD;
  Control(Descriptor(), operation, entry.descriptor, id, interest);
  entry.interest = interest;
  ++interests_;
}

void EventPoller::Remove(std::uint64_t id) {
  const auto found = entries_.find(id);
  if (found->second.interest != Interest::None) {
    epoll_ctl(Descriptor(), EPOLL_CTL_DEL, found->second.descriptor, nullptr);
  }
  entries_.erase(found);
}

void EventPoller::Dispatch(const std::function<bool()>& goOn) {
  std::array<epoll_event, kEventsInOnePass> events;
  const int count = epoll_wait(Descriptor(), events.data(), static_cast<int>(events.size()), 0);
  for (int i = 0; i < count && goOn(); ++i) {
    const epoll_event& event = events[static_cast<std::size_t>(i)];
    Dispatch(event.data.u64, event.events);
  }
}

void EventPoller::Dispatch(std::uint64_t id, std::uint32_t events) {
  // An earlier handler of the same batch may have ended this watch.
  const auto found = entries_.find(id);
  if (found == entries_.end()) return;
  const bool broken = (events & (EPOLLERR | EPOLLHUP)) != 0;
  const Interest interest = found->second.interest;
  const Readiness ready{
      Includes(interest, Interest::Read) && (broken || (events & EPOLLIN) != 0),
      Includes(interest, Interest::Write) && (broken || (events & EPOLLOUT) != 0)};
  if (!ready.read && !ready.write) return;
  const std::shared_ptr<const Handler> handler = found->second.handler;
  (*handler)(ready);
}

}  // namespace tallowin::platform::linux_host
