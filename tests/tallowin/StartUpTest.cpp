#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/Program.h"

namespace tallowin {
namespace {

using platform::RegistryValue;
using testing::ElementsAre;
using testing::IsEmpty;

struct StartUpTest : testing::Test {
  test::FakeHost host;
  void SetUp() override {
    host.ImportPresets(1, 0);
    host.Port(1, "Socket Number") = RegistryValue::Dword(1111);
  }
};

TEST_F(StartUpTest, ServicesComeUpBehindAHiddenWindow) {
  test::Program program(host);
  program.Start();
  auto& form = program.tallowin.MainForm();
  EXPECT_EQ(form.Caption(), "Tallowin 1");
  EXPECT_EQ(form.Height(), 5580);
  EXPECT_EQ(form.State(), forms::WindowState::Minimised);
  EXPECT_FALSE(form.Visible());
  EXPECT_THAT(program.Log(), ElementsAre("Verbose Mode Disabled", "Port Sentry Deactivated",
                                         "Port Sentry Activated", "Trojan Sentry Deactivated",
                                         "IdentD Server Deactivated"));
}

TEST_F(StartUpTest, WithoutSettingsItRunsWithNoServiceAndNoWord) {
  host.registry.keys.clear();
  test::Program program(host);
  program.Start();
  EXPECT_FALSE(host.loop.Ended());
  EXPECT_THAT(program.Log(), IsEmpty());
  EXPECT_TRUE(program.tallowin.MainForm().portsntmnu.Checked());
  EXPECT_THAT(program.questions.asked, IsEmpty());
}

TEST_F(StartUpTest, ASecondInstanceLeavesAnEmptyLogFileAndEnds) {
  host.instance.first = false;
  test::Program program(host);
  program.Start();
  EXPECT_TRUE(host.loop.Ended());
  EXPECT_EQ(host.loop.ExitStatus(), 0);
  EXPECT_EQ(host.sockets.ListeningOn(1111), nullptr);
  const auto file = host.folder.Path() + "/Logs/Log 9_16_2000 9_41_07 PM.log";
  EXPECT_TRUE(test::ReadFile(file).ends_with("PM\r\n\r\n")) << "a header and no text";
}

TEST_F(StartUpTest, SwitchesAreFoundAnywhereAndLast) {
  host.Setting("Always On Top") = RegistryValue::Dword(1);
  test::Program program(host, "x-DISABLESENTRY-restored");
  program.Start();
  EXPECT_EQ(host.sockets.ListeningOn(1111), nullptr);
  EXPECT_EQ(host.Setting("Port Sentry"), RegistryValue::Dword(0));
  auto& form = program.tallowin.MainForm();
  EXPECT_TRUE(form.Visible());
  EXPECT_EQ(form.State(), forms::WindowState::Normal);
  EXPECT_FALSE(form.TopMost()) << "the restore ends it, whatever the setting says";

  host.instance.first = true;
  host.Setting("Trojan Sentry") = RegistryValue::Dword(1);
  test::FakeHost other;
  other.registry.keys = host.registry.keys;
  test::Program second(other, "-disablemon");
  second.Start();
  EXPECT_EQ(other.Setting("Trojan Sentry"), RegistryValue::Dword(0));
}

TEST_F(StartUpTest, HelpEndsTheProgramAfterTheServicesWereStarted) {
  test::Program program(host, "-disablesentry -?");
  program.questions.whileAsking = [&] { EXPECT_FALSE(host.loop.Ended()); };
  program.Start();
  ASSERT_EQ(program.questions.asked.size(), 1U);
  EXPECT_EQ(program.questions.asked[0].title, "Command Line Arguments");
  EXPECT_EQ(program.questions.asked[0].text,
            "Command Line Parameters\r\n---\r\n-DisableMon\t- Disable Active Monitoring\r\n"
            "-DisableSentry\t- Disable Port Sentry\r\n-Restored\t\t- Start window restored");
  EXPECT_TRUE(host.loop.Ended());
  EXPECT_EQ(host.Setting("Port Sentry"), RegistryValue::Dword(0)) << "durable before the box came";
  EXPECT_FALSE(std::filesystem::exists(host.folder.Path() + "/Logs")) << "no log is written";
}

TEST_F(StartUpTest, AnErrorThatNobodyHandlesEndsTheProgramWithTheLogWrittenFirst) {
  test::Program program(host);
  program.Start();
  const auto file = host.folder.Path() + "/Logs/Log 9_16_2000 9_41_07 PM.log";
  program.questions.whileAsking = [&] {
    EXPECT_TRUE(std::filesystem::exists(file));
    // Events run on behind the box; a second failure changes nothing.
    host.loop.Deliver([] { throw platform::RunTimeError(6, "Overflow"); });
    EXPECT_FALSE(host.loop.Ended()) << "the first is still to be read";
  };
  host.registry.keys.clear();
  host.loop.Deliver([&] { program.tallowin.Settings().LoadSettings(); });
  ASSERT_EQ(program.questions.asked.size(), 1U);
  EXPECT_EQ(program.questions.asked[0].text, "Run-time error '13':\r\n\r\nType mismatch");
  EXPECT_EQ(program.questions.asked[0].style, forms::MessageBoxStyle::Stop);
  EXPECT_EQ(host.loop.ExitStatus(), 1);
}

TEST_F(StartUpTest, TwoProgramsLiveInOneProcess) {
  test::FakeHost other;
  other.ImportPresets(1, 0);
  test::Program one(host);
  test::Program two(other);
  one.Start();
  two.Start();
  host.loop.Deliver([&] { one.tallowin.Quit(); });
  EXPECT_TRUE(host.loop.Ended());
  EXPECT_FALSE(other.loop.Ended());
}

}  // namespace
}  // namespace tallowin
