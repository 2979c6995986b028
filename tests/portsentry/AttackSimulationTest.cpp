#include "portsentry/AttackSimulation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using forms::MessageBoxStyle;
using platform::RegistryValue;
using platform::SocketState;
using testing::ElementsAre;

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
  std::vector<MessageBoxStyle> Asked() {
    std::vector<MessageBoxStyle> styles;
    for (const auto& question : program->questions.asked) styles.push_back(question.style);
    return styles;
  }
};

TEST_F(AttackSimulationTest, EachBoxHasItsIcon) {
  Up(0, {});
  Click();
  EXPECT_THAT(Asked(), ElementsAre(MessageBoxStyle::Information));
  EXPECT_TRUE(Item().Enabled());
  Up(1, {});
  Click();
  EXPECT_THAT(Asked(), ElementsAre(MessageBoxStyle::Plain, MessageBoxStyle::Exclamation));
  EXPECT_FALSE(Item().Enabled()) << "until the program ends";
}

TEST_F(AttackSimulationTest, AClosedSocketIsLeftForTheNextRunAndAFailedOneIsNot) {
  Up(1, {{4, 4444}, {9, 9999}});
  Click();
  auto* socket = host.sockets.ConnectingTo("127.0.0.1");
  ASSERT_NE(socket, nullptr);
  EXPECT_EQ(socket->remotePort, 4444);
  EXPECT_FALSE(Item().Enabled());
  socket->state = SocketState::Closing;
  socket->events.Close();
  EXPECT_TRUE(Item().Enabled());
  EXPECT_EQ(socket->state, SocketState::Closing);

  Click();
  EXPECT_EQ(socket->state, SocketState::Connecting);
  socket->state = SocketState::Error;
  socket->events.Error(10061, "Connection is forcefully rejected");
  EXPECT_TRUE(Item().Enabled());
  EXPECT_EQ(socket->state, SocketState::Closed);
  EXPECT_EQ(program->questions.asked.size(), 2U) << "no word about an error";
}

TEST_F(AttackSimulationTest, ASlotWithAnImpossiblePortEndsTheProgramWithAMessageAndTheLogSaved) {
  Up(1, {{2, static_cast<std::uint32_t>(-5)}});
  Click();
  ASSERT_EQ(Asked().back(), MessageBoxStyle::Stop);
  EXPECT_EQ(program->questions.asked.back().text,
            "Run-time error '380':\r\n\r\nInvalid property value");
  EXPECT_TRUE(host.loop.Ended());
  EXPECT_TRUE(std::filesystem::exists(host.folder.Path() + "/Logs"));
}

}  // namespace
}  // namespace tallowin::portsentry
