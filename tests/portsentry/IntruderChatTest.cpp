#include "portsentry/IntruderChat.h"

#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using platform::RegistryValue;
using platform::SocketState;

struct IntruderChatTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;
  test::FakeSockets::Socket* first = nullptr;
  test::FakeSockets::Socket* second = nullptr;

  /// Two callers in chats on the given slots.
  void Chat(int firstSlot, int secondSlot) {
    host.ImportPresets(1, 0);
    for (const int slot : {firstSlot, secondSlot}) {
      host.Port(slot, "Socket Number") = RegistryValue::Dword(1000U + static_cast<unsigned>(slot));
      host.Port(slot, "Action") = RegistryValue::Text("Let me talk to the hacker");
    }
    program = std::make_unique<test::Program>(host);
    program->Start();
    for (const int slot : {firstSlot, secondSlot}) program->Call(1000 + slot);
    const auto& all = host.sockets.all;
    first = all[all.size() - 3];
    second = all[all.size() - 1];
    ASSERT_EQ(first->state, SocketState::Connected);
    ASSERT_EQ(second->state, SocketState::Connected);
  }
  ChatWindow& Window() { return program->tallowin.ChatWindow(); }
};

TEST_F(IntruderChatTest, OneWindowForAllCallers) {
  Chat(1, 2);
  EXPECT_TRUE(Window().Visible());
  const std::size_t lines = program->Log().size();

  first->localPort = 1001;
  first->received = "hello\r\n";
  first->events.DataArrival(7);
  Window().SendBox.SetText("who are you?");
  Window().SendButton.Click();
  Window().SendButton.Click();
  EXPECT_EQ(first->sent, "Host: who are you?\r\nHost: \r\n") << "an empty line is sent, too";
  EXPECT_EQ(second->sent, first->sent) << "and does not see what the other caller says";
  EXPECT_EQ(Window().ChatBox.Text(), "Port 1001: hello\r\n\r\nHost: who are you?\r\nHost: \r\n");
  EXPECT_EQ(Window().ChatBox.SelStart(), Window().ChatBox.Text().size());
  EXPECT_EQ(program->Log().size(), lines) << "no word of it reaches the log";

  first->state = SocketState::Closing;
  first->events.Close();
  EXPECT_TRUE(Window().Visible()) << "the other one goes on";
  Window().EndButton.Click();
  EXPECT_FALSE(Window().Visible());
  EXPECT_EQ(second->state, SocketState::Closed);
  EXPECT_NE(Window().ChatBox.Text(), "");
}

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

TEST_F(IntruderChatTest, SwitchingThePortsOffLeavesTheWindowToTheUser) {
  Chat(1, 2);
  program->tallowin.MainForm().portsntmnu.Click();
  EXPECT_TRUE(Window().Visible());
  Window().SendButton.Click();
  Window().EndButton.Click();
  EXPECT_FALSE(Window().Visible());
  EXPECT_FALSE(host.loop.Ended());
}

}  // namespace
}  // namespace tallowin::portsentry
