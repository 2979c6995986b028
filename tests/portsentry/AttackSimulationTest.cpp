#include "portsentry/AttackSimulation.h"

#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using forms::MessageBoxStyle;
using platform::RegistryValue;
using platform::SocketState;

struct AttackSimulationTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;

  void Up(std::uint32_t portSentry, const std::map<int, std::uint32_t>& slots) {
    host.ImportPresets(portSentry, 0);
    for (const auto& [slot, port] : slots) {
      host.Port(slot, "Socket Number") = RegistryValue::Dword(port);
    }
    program = std::make_unique<test::Program>(host);
    program->Start();
  }
  forms::MenuItem& Item() { return program->tallowin.MainForm().simhack; }
  void Click() {
    host.loop.Deliver([this] { Item().Click(); });
  }
  void ExpectAsked(std::size_t index, const char* text, MessageBoxStyle style, const char* title) {
    ASSERT_GT(program->questions.asked.size(), index);
    const auto& asked = program->questions.asked[index];
    EXPECT_EQ(asked.text, text);
    EXPECT_EQ(asked.style, style);
    EXPECT_EQ(asked.title, title);
  }
  test::FakeSockets::Socket* Calling() {
    for (auto* socket : host.sockets.all) {
      if (socket->state == SocketState::Connecting) return socket;
    }
    return nullptr;
  }
  static constexpr const char* kOnlyATest =
      "Tallowin will now test itself by simulating a hacker connecting to your computer. Do not "
      "panic if an alarm sounds or a visual warning appears on your screen as this is only a test.";
};

TEST_F(AttackSimulationTest, WithoutPortSentryNothingIsTried) {
  Up(0, {{1, 1111}});
  Click();
  ASSERT_EQ(program->questions.asked.size(), 1U);
  ExpectAsked(0, "Port Sentry Is Not Enabled", MessageBoxStyle::Information,
              "Cannot Simulate Hack");
  EXPECT_TRUE(Item().Enabled());
  EXPECT_EQ(Calling(), nullptr);
}

TEST_F(AttackSimulationTest, CallsTheFirstUsedSlotAndCanBeRepeated) {
  Up(1, {{4, 4444}, {9, 9999}});
  Click();
  ExpectAsked(0, kOnlyATest, MessageBoxStyle::Plain, "Tallowin");
  EXPECT_EQ(program->questions.asked.size(), 1U);
  EXPECT_FALSE(Item().Enabled());
  auto* socket = Calling();
  ASSERT_NE(socket, nullptr);
  EXPECT_EQ(socket->remoteHost, "127.0.0.1");
  EXPECT_EQ(socket->remotePort, 4444);

  socket->state = SocketState::Closing;
  socket->events.Close();
  EXPECT_TRUE(Item().Enabled());
  EXPECT_EQ(socket->state, SocketState::Closing) << "is left for the next run to close";

  Click();
  EXPECT_EQ(socket->state, SocketState::Connecting);
  EXPECT_FALSE(Item().Enabled());
  socket->state = SocketState::Error;
  socket->events.Error(10061, "Connection is forcefully rejected");
  EXPECT_TRUE(Item().Enabled());
  EXPECT_EQ(socket->state, SocketState::Closed);
  EXPECT_EQ(program->questions.asked.size(), 2U) << "no word about an error";
}

TEST_F(AttackSimulationTest, AnEmptyTableLeavesTheItemDisabledForEver) {
  Up(1, {});
  Click();
  ASSERT_EQ(program->questions.asked.size(), 2U);
  ExpectAsked(1, "You do not have any ports setup", MessageBoxStyle::Exclamation,
              "Cannot Simulate Hack");
  EXPECT_FALSE(Item().Enabled());
  program->tallowin.MainForm().portsntmnu.Click();
  program->tallowin.MainForm().portsntmnu.Click();
  EXPECT_FALSE(Item().Enabled());
}

}  // namespace
}  // namespace tallowin::portsentry
