#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "portsentry/ConnectionHandling.h"
#include "portsentry/IntruderChat.h"
#include "portsentry/PortListeners.h"
#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using platform::RegistryValue;
using platform::SocketState;
using testing::ElementsAre;
using testing::IsEmpty;

struct PortListenersTest : test::ProgramTest {
  void SetUp() override {
    host.ImportPresets(1, 1);
    host.SetSlot(2, 2222);
    host.SetSlot(3, 3333);
  }
  core::Form1& Form1() {
    return dynamic_cast<core::Form1&>(*program->tallowin.Forms().Find("Form1"));
  }
};

TEST_F(PortListenersTest, ATakenPortIsToldAndLeavesTheOthersUp) {
  host.sockets.takenPorts[2222] = true;
  Start();
  auto log = program->Log();
  EXPECT_THAT(
      std::vector(log.begin(), log.begin() + 12),
      ElementsAre("Verbose Mode Enabled", "Port Sentry Disactivated",
                  // A rebuild tears down first, by the table and not by what is there.
                  "Unloaded Array ID 2", "Unloaded Array ID 3", "Port Sentry Deactivated",
                  "Array ID 1 Not in use", "Error: 10048 Address already in use",
                  "Error Initialising Port 2", "Port 2222 Initialised", "Port 3333 Initialised",
                  "Array ID 4 Not in use", "Array ID 5 Not in use"));
  EXPECT_NE(host.sockets.ListeningOn(3333), nullptr);
  EXPECT_EQ(host.sockets.ListeningOn(2222), nullptr);
}

TEST_F(PortListenersTest, ASlotEmptiedWhileUpKeepsItsListenerThroughARebuild) {
  Start();
  auto* old = host.sockets.ListeningOn(2222);
  host.Port(2, "Socket Number") = RegistryValue::Dword(0);
  // What the options dialog does to the table and then to the box.
  program->tallowin.Settings().LoadPortSettings();
  Options().PortChk.SetValue(2);
  Options().PortChk.SetValue(1);
  EXPECT_EQ(host.sockets.ListeningOn(2222), old);
  EXPECT_NE(host.sockets.ListeningOn(3333), nullptr);

  // The slot is used again: its element is there already, which is passed over without a word, and
  // its listener cannot be opened a second time or moved.
  host.Port(2, "Socket Number") = RegistryValue::Dword(2222);
  program->tallowin.Settings().LoadPortSettings();
  const std::size_t before = program->Log().size();
  Form1().enablemnu.Click();
  for (const auto& line : program->Log(before)) EXPECT_NE(line, "Error: 360 Object already loaded");
}

TEST_F(PortListenersTest, TheSwitchesAndTheTwoCommandsStayInStep) {
  Start();
  auto& form1 = Form1();
  auto& item = Main().portsntmnu;
  EXPECT_FALSE(form1.enablemnu.Enabled());
  EXPECT_TRUE(form1.disableprotectmnu.Enabled());

  form1.disableprotectmnu.Click();
  EXPECT_EQ(host.sockets.ListeningOn(2222), nullptr);
  EXPECT_TRUE(form1.enablemnu.Enabled());
  EXPECT_TRUE(item.Checked()) << "the main menu is not told";

  item.Click();  // still ticked, so this unticks it
  EXPECT_EQ(host.Setting("Port Sentry"), RegistryValue::Dword(0));
  EXPECT_EQ(host.sockets.ListeningOn(2222), nullptr);
  item.Click();
  EXPECT_EQ(host.Setting("Port Sentry"), RegistryValue::Dword(1));
  EXPECT_NE(host.sockets.ListeningOn(2222), nullptr);

  const std::size_t before = program->Log().size();
  Options().PortChk.SetValue(2);
  EXPECT_THAT(program->Log(before), IsEmpty());
  EXPECT_NE(host.sockets.ListeningOn(2222), nullptr);
}

struct ConnectionHandlingTest : test::ProgramTest {
  void UpWith(const char* action) {
    host.ImportPresets(1, 0);
    host.SetSlot(1, 1111, action, "go away");
    Start();
    // The lookups of an alarm have tests of their own.
    Main().Toolbar1.OnButtonClick = {};
  }
  /// The element of Accept: made right behind that of Listen.
  test::FakeSockets::Socket& Accepting() {
    const auto listener =
        std::find(host.sockets.all.begin(), host.sockets.all.end(), host.sockets.ListeningOn(1111));
    return **(listener + 1);
  }
};

TEST_F(ConnectionHandlingTest, ASecondCallerOfABusySocketGetsNothingAndTheLogSaysOtherwise) {
  UpWith("Accept connection send packet then disconnect");
  auto& accepting = Accepting();
  accepting.state = SocketState::Connected;
  program->Call(1111);
  EXPECT_EQ(accepting.sent, "go away") << "the text goes to the first caller";
  EXPECT_EQ(accepting.state, SocketState::Closed) << "who is closed";
  EXPECT_EQ(program->Log().back(), "----Connected Attempt Ended----");
}

TEST_F(ConnectionHandlingTest, TheActionFollowsTheTableAndTheErrorsAreForVerboseEyes) {
  UpWith("Don't accept connection");
  program->tallowin.Settings().PortSettings(1).Action = "Let me talk to the hacker";
  program->Call(1111);
  EXPECT_TRUE(program->tallowin.ChatWindow().Visible());
  EXPECT_THAT(NewLines(), testing::Contains("Chat Initialised With Port 0"));

  auto* listener = host.sockets.ListeningOn(1111);
  listener->events.Error(10024, "Too many open files");
  EXPECT_THAT(NewLines(), ElementsAre());
  Options().VerboseChk.SetValue(1);
  (void)NewLines();
  listener->events.Error(10024, "Too many open files");
  Accepting().events.Error(10054, "Connection reset by peer");
  EXPECT_THAT(NewLines(),
              ElementsAre("Winsock Listen Error On Port 1111:10024:Too many open files",
                          "Winsock Accept Error On Port 0:10054:Connection reset by peer"));
}

TEST_F(ConnectionHandlingTest, CallersNestAndEachHasItsWholeSetOfLines) {
  UpWith("Don't accept connection");
  host.loop.pending.push_back([&] { program->Call(1111, "192.0.2.2"); });
  program->Call(1111, "192.0.2.1");
  const auto log = NewLines();
  EXPECT_EQ(log.size(), 20U);
  EXPECT_EQ(std::count(log.begin(), log.end(), "----Connected Attempt Ended----"), 2);
  EXPECT_EQ(log[2], "") << "the second begins right behind the first line of the first";
}

struct IntruderChatTest : test::ProgramTest {
  test::FakeSockets::Socket* first = nullptr;
  test::FakeSockets::Socket* second = nullptr;

  void Chat(int firstSlot, int secondSlot) {
    host.ImportPresets(1, 0);
    for (const int slot : {firstSlot, secondSlot}) {
      host.SetSlot(slot, 1000 + slot, core::action::kChat);
    }
    Start();
    for (const int slot : {firstSlot, secondSlot}) program->Call(1000 + slot);
    const auto& all = host.sockets.all;
    first = all[all.size() - 3];
    second = all[all.size() - 1];
    ASSERT_EQ(first->state, SocketState::Connected);
    ASSERT_EQ(second->state, SocketState::Connected);
  }
  ChatWindow& Window() { return program->tallowin.ChatWindow(); }
};

TEST_F(IntruderChatTest, AGapInTheTableHidesTheWindowAlthoughAChatGoesOn) {
  Chat(2, 3);
  first->state = SocketState::Closing;
  first->events.Close();
  EXPECT_FALSE(Window().Visible());
  EXPECT_EQ(second->state, SocketState::Connected);
  second->received = "still here";
  second->events.DataArrival(10);
  EXPECT_EQ(Window().ChatBox.Text(), "Port 0: still here\r\n");
}

}  // namespace
}  // namespace tallowin::portsentry
