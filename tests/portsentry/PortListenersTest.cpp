#include "portsentry/PortListeners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using platform::RegistryValue;
using testing::ElementsAre;
using testing::IsEmpty;

struct PortListenersTest : testing::Test {
  test::FakeHost host;
  void SetUp() override {
    host.ImportPresets(1, 1);
    host.Port(2, "Socket Number") = RegistryValue::Dword(2222);
    host.Port(3, "Socket Number") = RegistryValue::Dword(3333);
  }
  core::Form1& Form1Of(test::Program& program) {
    return dynamic_cast<core::Form1&>(*program.tallowin.Forms().Find("Form1"));
  }
};

TEST_F(PortListenersTest, ATakenPortIsToldAndLeavesTheOthersUp) {
  host.sockets.takenPorts[2222] = true;
  test::Program program(host);
  program.Start();
  auto log = program.Log();
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
  test::Program program(host);
  program.Start();
  auto* old = host.sockets.ListeningOn(2222);
  host.Port(2, "Socket Number") = RegistryValue::Dword(0);
  // What the options dialog does to the table and then to the box.
  program.tallowin.Settings().LoadPortSettings();
  program.tallowin.Options().PortChk.SetValue(2);
  program.tallowin.Options().PortChk.SetValue(1);
  EXPECT_EQ(host.sockets.ListeningOn(2222), old);
  EXPECT_NE(host.sockets.ListeningOn(3333), nullptr);

  // The slot is used again: its element is there already, which is passed over without a word, and
  // its listener cannot be opened a second time or moved.
  host.Port(2, "Socket Number") = RegistryValue::Dword(2222);
  program.tallowin.Settings().LoadPortSettings();
  const std::size_t before = program.Log().size();
  Form1Of(program).enablemnu.Click();
  for (const auto& line : program.Log(before)) EXPECT_NE(line, "Error: 360 Object already loaded");
}

TEST_F(PortListenersTest, TheSwitchesAndTheTwoCommandsStayInStep) {
  test::Program program(host);
  program.Start();
  auto& form1 = Form1Of(program);
  auto& item = program.tallowin.MainForm().portsntmnu;
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

  const std::size_t before = program.Log().size();
  program.tallowin.Options().PortChk.SetValue(2);
  EXPECT_THAT(program.Log(before), IsEmpty());
  EXPECT_NE(host.sockets.ListeningOn(2222), nullptr);
}

TEST_F(PortListenersTest, AStoredZeroStillWritesItsLines) {
  host.ImportPresets(0, 0);
  test::Program program(host);
  program.Start();
  EXPECT_THAT(program.Log(), ElementsAre("Verbose Mode Disabled", "Port Sentry Deactivated",
                                         "Trojan Sentry Deactivated", "IdentD Server Deactivated"));
  EXPECT_FALSE(program.tallowin.MainForm().portsntmnu.Checked());
}

}  // namespace
}  // namespace tallowin::portsentry
