// Sockets on a system that is short of descriptors or memory, or that fails them otherwise.
#include <poll.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <optional>

#include "LinuxWinsockTest.h"

namespace {

// A system that is short: the functions below stand before those of the library.
int sendsToFail = 0;
bool newWatchesFail = false;
std::optional<int> lowestForbidden;

int LowestFree() {
  const int lowest = dup(0);
  close(lowest);
  return lowest;
}

}  // namespace

extern "C" ssize_t send(int descriptor, const void* data, size_t size, int flags) {
  if (sendsToFail == 0) return sendto(descriptor, data, size, flags, nullptr, 0);
  --sendsToFail;
  errno = sendsToFail % 2 == 0 ? ENOBUFS : ENOMEM;
  return -1;
}

extern "C" int accept4(int descriptor, sockaddr* address, socklen_t* size, int flags) {
  if (!lowestForbidden || LowestFree() < *lowestForbidden) {
    return static_cast<int>(syscall(SYS_accept4, descriptor, address, size, flags));
  }
  errno = EMFILE;
  return -1;
}

extern "C" int epoll_ctl(int epoll, int operation, int descriptor, epoll_event* event) noexcept {
  if (!newWatchesFail || operation != EPOLL_CTL_ADD) {
    return static_cast<int>(syscall(SYS_epoll_ctl, epoll, operation, descriptor, event));
  }
  errno = ENOSPC;
  return -1;
}

namespace tallowin::platform::linux_host {
namespace {

using LinuxWinsockShortageTest = LinuxWinsockTest;

/// While it lives, a caller gets no descriptor besides those that the process gives back. No limit
/// of the system, as that would starve the sanitizers too.
class NoFreeDescriptors {
 public:
  NoFreeDescriptors() { lowestForbidden = LowestFree(); }
  NoFreeDescriptors(const NoFreeDescriptors&) = delete;
  NoFreeDescriptors& operator=(const NoFreeDescriptors&) = delete;
  ~NoFreeDescriptors() { lowestForbidden.reset(); }
};

TEST_F(LinuxWinsockShortageTest, WithoutFreeDescriptorsCallersWaitAndTheLoopRests) {
  int requests = 0;
  Listen([&](std::int32_t) { ++requests; });
  std::deque<TestClient> clients;
  for (int i = 0; i < 20; ++i) clients.emplace_back(port);

  pollfd poller{loop.Poller().Descriptor(), POLLIN, 0};
  {
    const NoFreeDescriptors none;
    loop.DoEvents();
  }
  EXPECT_EQ(poll(&poller, 1, 0), 0) << "Nothing is ready while the listener pauses.";
  EXPECT_EQ(requests, 0);
  EXPECT_TRUE(Until([&] { return requests == 20; }));
}

TEST_F(LinuxWinsockShortageTest, WithoutFreeDescriptorsTheOldestHeldCallersMakeRoom) {
  std::deque<TestClient> clients;
  std::optional<NoFreeDescriptors> none;
  int requests = 0;
  Listen([&](std::int32_t requestID) {
    if (++requests > 1) return;
    EXPECT_TRUE(Until([&] { return requests == 10; }));
    clients.emplace_back(port);
    clients.emplace_back(port);
    none.emplace();
    EXPECT_TRUE(Until([&] { return requests == 12; }));
    none.reset();
    socket->Accept(requestID);  // Its handler is under way, so it has been spared.
  });
  for (int i = 0; i < 10; ++i) clients.emplace_back(port);
  ASSERT_TRUE(Until([&] { return socket->State() == SocketState::Connected; }));
  for (std::size_t i = 0; i < clients.size(); ++i) {
    const bool given = i == 1 || i == 2;
    EXPECT_EQ(clients[i].Over(), given) << i;
    EXPECT_EQ(clients[i].End(), given ? ECONNRESET : TestClient::kOpen) << i;
  }
}

TEST_F(LinuxWinsockShortageTest, ShortageOfMemoryCostsNoConnectionAndNeverEndsTheProgram) {
  Listen([&](std::int32_t requestID) {
    socket->Accept(requestID);
    sendsToFail = 4;
    socket->SendData("text");
    EXPECT_EQ(sendsToFail, 3);
    loop.DoEvents();
    EXPECT_EQ(sendsToFail, 2);
    socket->Close();
  });
  TestClient client(port);
  ASSERT_TRUE(Until([&] { return client.Over(); }));
  EXPECT_EQ(client.Received(), "text");
  EXPECT_EQ(client.End(), 0);

  listener->SetEvents({});
  std::string told;
  socket->SetEvents({.Connect = [&] { told += "connected"; },
                     .Close = [&] { told += "closed"; },
                     .Error = [&](int number, const auto&) { told += std::to_string(number); }});
  socket->SetRemoteHost("127.0.0.1");
  socket->SetRemotePort(port);
  socket->Connect();
  newWatchesFail = true;
  EXPECT_TRUE(Until([&] { return !told.empty(); }));
  newWatchesFail = false;
  EXPECT_EQ(told, "10055");
  EXPECT_EQ(socket->State(), SocketState::Error);
  EXPECT_FALSE(loop.Ended());
}

}  // namespace
}  // namespace tallowin::platform::linux_host
