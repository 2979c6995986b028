// The whois client against servers on four addresses of the loopback.

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <QCoreApplication>
#include <chrono>
#include <functional>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/LinuxWinsock.h"
#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using platform::linux_host::FileDescriptor;
using testing::ElementsAre;

/// Never waits: what it does is decided by the test, between passes of the loop.
class WhoisServer {
 public:
  WhoisServer(const std::string& address, int port)
      : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    const int on = 1;
    setsockopt(listener_.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(static_cast<std::uint16_t>(port));
    inet_pton(AF_INET, address.c_str(), &place.sin_addr);
    EXPECT_EQ(bind(listener_.Get(), reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
    EXPECT_EQ(listen(listener_.Get(), 8), 0);
  }

  [[nodiscard]] int Port() const {
    sockaddr_in place{};
    socklen_t size = sizeof place;
    getsockname(listener_.Get(), reinterpret_cast<sockaddr*>(&place), &size);
    return ntohs(place.sin_port);
  }
  /// True once a whole query has come in.
  bool Asked() {
    if (!client_)
      client_ = FileDescriptor(accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!client_) return false;
    char buffer[512];
    const auto count = recv(client_.Get(), buffer, sizeof buffer, MSG_DONTWAIT);
    if (count > 0) query.append(buffer, static_cast<std::size_t>(count));
    return query.ends_with("\r\n");
  }
  void Send(std::string_view text) { send(client_.Get(), text.data(), text.size(), MSG_NOSIGNAL); }
  void Close() { client_ = FileDescriptor(); }
  void Reset() {
    const linger atOnce{1, 0};
    setsockopt(client_.Get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    Close();
  }

  std::string query;

 private:
  FileDescriptor listener_;
  FileDescriptor client_;
};

struct WhoisServersTest : testing::Test {
  int argc = 1;
  char name[5] = "test";
  char* argv[2] = {name, nullptr};
  QCoreApplication application{argc, argv};
  test::FakeHost host;
  platform::linux_host::LinuxEventLoop loop;
  platform::linux_host::LinuxSocketFactory sockets{loop};
  std::unique_ptr<test::Program> program;
  int port = 0;
  std::size_t start = 0;

  /// The program asks 127.0.0.1 to 127.0.0.4 on one port.
  void Up(int onPort) {
    port = onPort;
    host.ImportPresets(0, 0);
    const core::Endpoints endpoints{
        .whoisServers = {"127.0.0.1", "127.0.0.2", "127.0.0.3", "127.0.0.4"}, .whoisPort = port};
    program = std::make_unique<test::Program>(host, host.Host(loop, sockets), "", endpoints);
    loop.Deliver([&] { program->tallowin.Start(); });
    Press();
  }
  void Press() {
    Form().LoggedIPs.SetText("192.0.2.7");
    start = program->Log().size();
    Form().Toolbar1.Click("whois");
  }
  void Answer(WhoisServer& server, std::string_view text) {
    server.query.clear();
    ASSERT_TRUE(Until([&] { return server.Asked(); }));
    server.Send(text);
    server.Close();
  }
  core::MainForm& Form() { return program->tallowin.MainForm(); }
  bool Until(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      loop.DoEvents();
    }
    return true;
  }
  bool Logged(const std::string& text) {
    return Form().Status.Text().find(text) != std::string::npos;
  }
  std::vector<std::string> Emails() {
    auto* list = dynamic_cast<forms::ItemList*>(
        program->tallowin.Forms().Find("reporthacker")->Find("emaillist"));
    std::vector<std::string> entries;
    for (std::size_t i = 0; i < list->ListCount(); ++i) entries.push_back(list->List(i));
    return entries;
  }
};

TEST_F(WhoisServersTest, AllAnswerInTheirOwnTimeAndInChunks) {
  WhoisServer first("127.0.0.1", 0);
  WhoisServer second("127.0.0.2", first.Port());
  WhoisServer third("127.0.0.3", first.Port());
  WhoisServer fourth("127.0.0.4", first.Port());
  Up(first.Port());
  ASSERT_TRUE(Until([&] { return first.Asked(); }));
  EXPECT_EQ(first.query, "192.0.2.7\r\n");
  first.Send("% no@");
  ASSERT_TRUE(Until([&] { return Logged("Whois results...:\r\nno@\r\n"); }));
  first.Send("one@first.example\n" + std::string(20000, 'x'));
  first.Close();
  Answer(second, "two@second.example\n");

  // The third says nothing for as long as it likes, and the program does not stand still.
  ASSERT_TRUE(Until([&] { return third.Asked(); }));
  Form().LoggedIPs.SetText("192.0.2.8");
  third.Close();
  Answer(fourth, "e-mail: abuse@isp.example\r\nagain: two@second.example\r\n");
  EXPECT_EQ(fourth.query, "192.0.2.8\r\n");
  ASSERT_TRUE(Until([&] { return Form().LoggedIPs.Enabled(); }));
  EXPECT_TRUE(Logged("Whois Results For 192.0.2.8 Completed\r\n"));
  EXPECT_FALSE(Logged("Error"));
  EXPECT_THAT(Emails(),
              ElementsAre("one@first.example", "two@second.example", "abuse@isp.example"));
}

TEST_F(WhoisServersTest, WhereTheSecondRefusesAndTheFourthFailsTheListStaysAsItWas) {
  WhoisServer first("127.0.0.1", 0);
  WhoisServer third("127.0.0.3", first.Port());
  WhoisServer fourth("127.0.0.4", first.Port());
  Up(first.Port());
  Answer(first, "");
  Answer(third, "");
  Answer(fourth, "before@isp.example");
  ASSERT_TRUE(Until([&] { return Form().LoggedIPs.Enabled(); }));

  Press();
  Answer(first, "% one\none@first.example\n");
  Answer(third, "three@third.example\r\n");
  fourth.query.clear();
  ASSERT_TRUE(Until([&] { return fourth.Asked(); }));
  fourth.Reset();
  ASSERT_TRUE(Until([&] { return Form().LoggedIPs.Enabled(); }));
  EXPECT_THAT(
      program->Log(start),
      ElementsAre("", "Whois Results For 192.0.2.7 Started", "", "Whois results...:", "one",
                  "one@first.example", "", testing::StartsWith("Error On Whois Sock 2 - 10061 "),
                  "Whois results...:", "three@third.example\r", "",
                  testing::StartsWith("Error On Whois Sock 4 - 10054 "),
                  "End Of Whois Results For 192.0.2.7", "<------>"));
  EXPECT_THAT(Emails(), ElementsAre("before@isp.example"));
}

}  // namespace
}  // namespace tallowin::nettools
