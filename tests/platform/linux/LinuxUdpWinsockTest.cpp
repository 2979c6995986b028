#include "platform/linux/LinuxUdpWinsock.h"

#include <gmock/gmock.h>
#include <sys/socket.h>

#include "LoopTest.h"
#include "platform/linux/TcpSocket.h"

namespace tallowin::platform::linux_host {
namespace {

using testing::ElementsAre;

struct LinuxUdpWinsockTest : LoopTest {
  FileDescriptor server{::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
  int port = 0;
  sockaddr_in client{};
  LinuxUdpWinsock socket{loop};
  std::vector<std::string> arrived;
  std::vector<int> errors;

  void SetUp() override {
    const auto loopback = *AddressOf("127.0.0.1", 0);
    ASSERT_EQ(bind(server.Get(), reinterpret_cast<const sockaddr*>(&loopback), sizeof loopback), 0);
    port = LocalPortOf(server);
    socket.SetRemoteHost("127.0.0.1");
    socket.SetRemotePort(port);
    socket.SetEvents(
        {.DataArrival = [this](std::int32_t) { arrived.push_back(socket.GetData()); },
         .Error = [this](int number, const std::string&) { errors.push_back(number); }});
  }
  std::string Receive() {
    char bytes[64];
    socklen_t size = sizeof client;
    ssize_t length = -1;
    EXPECT_TRUE(Until([&] {
      length = recvfrom(server.Get(), bytes, sizeof bytes, MSG_DONTWAIT,
                        reinterpret_cast<sockaddr*>(&client), &size);
      return length >= 0;
    }));
    return {bytes, static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
  }
  void SendFrom(const FileDescriptor& from, const std::string& text) const {
    EXPECT_GE(sendto(from.Get(), text.data(), text.size(), 0,
                     reinterpret_cast<const sockaddr*>(&client), sizeof client),
              0);
  }
};

TEST_F(LinuxUdpWinsockTest, EachDatagramIsAnEventAndStrangersAreNotHeard) {
  for (const char* host : {"127.0.0.1", "localhost"}) {
    socket.Close();
    socket.SetRemoteHost(host);
    socket.SendData("one");
    socket.SendData("two");
    EXPECT_EQ(Receive(), "one") << host;
    EXPECT_EQ(Receive(), "two");
  }
  const FileDescriptor stranger(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  SendFrom(stranger, "from a stranger");
  SendFrom(server, "a");
  SendFrom(server, std::string(8193, 'x'));
  SendFrom(server, "");
  SendFrom(server, std::string(8192, 'y'));
  EXPECT_TRUE(Until([&] { return arrived.size() == 3; }));
  EXPECT_THAT(arrived, ElementsAre("a", "", std::string(8192, 'y')));
  EXPECT_THAT(errors, ElementsAre(10040));

  socket.Close();
  SendFrom(server, "late");
  loop.DoEvents();
  EXPECT_EQ(arrived.size(), 3U);
}

}  // namespace
}  // namespace tallowin::platform::linux_host
