#include "portsentry/ConnectionHandling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using platform::RegistryValue;
using platform::SocketState;
using testing::ElementsAre;

struct ConnectionHandlingTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;
  std::size_t start = 0;

  void Up(const char* action) {
    host.ImportPresets(1, 0);
    host.Port(1, "Socket Number") = RegistryValue::Dword(1111);
    host.Port(1, "Port Description") = RegistryValue::Text("telnet");
    host.Port(1, "Packet To Send") = RegistryValue::Text("go away");
    host.Port(1, "Action") = RegistryValue::Text(action);
    program = std::make_unique<test::Program>(host);
    program->Start();
    // The lookups of an alarm have tests of their own.
    program->tallowin.MainForm().Toolbar1.OnButtonClick = {};
    start = program->Log().size();
  }
  /// The element of Accept: made right behind that of Listen.
  test::FakeSockets::Socket& Accepting() {
    const auto listener =
        std::find(host.sockets.all.begin(), host.sockets.all.end(), host.sockets.ListeningOn(1111));
    return **(listener + 1);
  }
};

TEST_F(ConnectionHandlingTest, Refuse) {
  Up("Don't accept connection");
  // The registry is asked at each attempt, so a description that was stored meanwhile is told.
  host.Port(1, "Port Description") = RegistryValue::Text("");
  program->Call(1111);
  EXPECT_THAT(program->Log(start),
              ElementsAre("", "----Connected Attempt Started----",
                          "Connection Attempted On Port 1111", "Description Of This Port: ",
                          "Malicious Users IP: 192.0.2.7", "Refusing Connection...", "Done",
                          "Re-Initialising Socket", "Done", "----Connected Attempt Ended----"));
  EXPECT_NE(host.sockets.ListeningOn(1111), nullptr);

  auto& list = program->tallowin.MainForm().LoggedIPs;
  EXPECT_EQ(list.Text(), "192.0.2.7");
  for (const char* address : {"192.0.2.7", "192.0.2.2"}) program->Call(1111, address);
  EXPECT_EQ(list.ListCount(), 3U) << "every attempt is an entry";
  EXPECT_EQ(list.Text(), "192.0.2.2");
}

TEST_F(ConnectionHandlingTest, SendAndClose) {
  Up("Accept connection send packet then disconnect");
  auto& accepting = Accepting();
  // The caller talks at once: what he says comes in while the text is being sent.
  bool talked = false;
  program->tallowin.MainForm().Status.OnChange = [&] {
    if (accepting.state != SocketState::Connected || std::exchange(talked, true)) return;
    accepting.received = "GET /\r\n\x1b";
    host.loop.Deliver([&] { accepting.events.DataArrival(8); });
  };
  program->Call(1111);
  EXPECT_THAT(
      program->Log(start),
      ElementsAre("", "----Connected Attempt Started----", "Connection Attempted On Port 1111",
                  "Description Of This Port: telnet", "Malicious Users IP: 192.0.2.7",
                  "Connnection Accepted...", "Incoming Text From Malicious User On Port 0",
                  "{GET /", "\x1b}", "Sending Specified Message...", "Done",
                  "Closing Connection And Re-Initialising Socket",
                  "----Connected Attempt Ended----"));
  EXPECT_EQ(accepting.sent, "go away");
  EXPECT_EQ(accepting.state, SocketState::Closed);
}

TEST_F(ConnectionHandlingTest, ASecondCallerOfABusySocketGetsNothingAndTheLogSaysOtherwise) {
  Up("Accept connection send packet then disconnect");
  auto& accepting = Accepting();
  accepting.state = SocketState::Connected;
  program->Call(1111);
  EXPECT_EQ(accepting.sent, "go away") << "the text goes to the first caller";
  EXPECT_EQ(accepting.state, SocketState::Closed) << "who is closed";
  EXPECT_EQ(program->Log().back(), "----Connected Attempt Ended----");
}

TEST_F(ConnectionHandlingTest, AnUnknownActionNeitherAcceptsNorRefuses) {
  Up("let me talk to the hacker");
  auto* listener = host.sockets.ListeningOn(1111);
  program->Call(1111);
  EXPECT_EQ(program->Log().size(), start + 6);
  EXPECT_EQ(listener->state, SocketState::Listening);
  EXPECT_EQ(Accepting().state, SocketState::Closed);
}

TEST_F(ConnectionHandlingTest, TheActionFollowsTheTableAndTheErrorsAreForVerboseEyes) {
  Up("Don't accept connection");
  program->tallowin.Settings().PortSettings(1).Action = "Let me talk to the hacker";
  program->Call(1111);
  EXPECT_TRUE(program->tallowin.ChatWindow().Visible());
  EXPECT_THAT(program->Log(start), testing::Contains("Chat Initialised With Port 0"));

  auto* listener = host.sockets.ListeningOn(1111);
  const std::size_t before = program->Log().size();
  listener->events.Error(10024, "Too many open files");
  EXPECT_EQ(program->Log().size(), before);
  program->tallowin.Options().VerboseChk.SetValue(1);
  listener->events.Error(10024, "Too many open files");
  Accepting().events.Error(10054, "Connection reset by peer");
  EXPECT_THAT(program->Log(before + 1),
              ElementsAre("Winsock Listen Error On Port 1111:10024:Too many open files",
                          "Winsock Accept Error On Port 0:10054:Connection reset by peer"));
}

TEST_F(ConnectionHandlingTest, CallersNestAndEachHasItsWholeSetOfLines) {
  Up("Don't accept connection");
  host.loop.pending.push_back([&] { program->Call(1111, "192.0.2.2"); });
  program->Call(1111, "192.0.2.1");
  const auto log = program->Log(start);
  EXPECT_EQ(log.size(), 20U);
  EXPECT_EQ(std::count(log.begin(), log.end(), "----Connected Attempt Ended----"), 2);
  EXPECT_EQ(log[2], "") << "the second begins right behind the first line of the first";
}

}  // namespace
}  // namespace tallowin::portsentry
