#include "trojansentry/TrojanMon.h"

#include "support/Program.h"
#include "trojansentry/TrojanSentryTest.h"

namespace tallowin::trojansentry {
namespace {

using forms::Answer;
using platform::RegistryValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using TrojanMonTest = TrojanSentryTest;

TEST_F(TrojanMonTest, StartMakesTheKeysAndAcceptsWhatIsThere) {
  Add(kRun, "old");
  Ini("win.ini windows run") = "old.exe";
  EXPECT_FALSE(Runs());
  watch.StartTrojanSentry();
  EXPECT_TRUE(Runs());
  EXPECT_EQ(TakeLog(), "Trojan Sentry Activated\r\n");
  EXPECT_TRUE(host.registry.keys.contains(kMachineRun));
  EXPECT_TRUE(host.registry.keys.contains(kMachineServices));
  Tick();
  EXPECT_THAT(questions.asked, IsEmpty());
}

TEST_F(TrojanMonTest, AKeyThatCannotBeOpenedKeepsItFromStartingAndTheOthersAreTried) {
  host.registry.locked = {kMachineRun};
  EXPECT_FALSE(watch.OpenAutostartKeys());
  watch.StartTrojanSentry();
  EXPECT_FALSE(Runs());
  EXPECT_EQ(TakeLog(), "Trojan Sentry Deactivated\r\n");
  EXPECT_TRUE(host.registry.keys.contains(kRun));
}

TEST_F(TrojanMonTest, WhatChangesWhileItIsOffIsNeverSeen) {
  watch.StartTrojanSentry();
  watch.StopTrojanSentry();
  EXPECT_EQ(TakeLog(), "Trojan Sentry Activated\r\nTrojan Sentry Deactivated\r\n");
  EXPECT_FALSE(Runs());
  Add(kRun, "meanwhile");
  Ini("system.ini boot shell") = "other";
  watch.StartTrojanSentry();
  Tick();
  EXPECT_THAT(questions.asked, IsEmpty());
}

TEST_F(TrojanMonTest, OnlyAListThatHasGrownCounts) {
  Add(kRun, "a");
  Add(kRun, "b");
  watch.StartTrojanSentry();
  auto& values = host.registry.keys[kRun];
  values[0].second = RegistryValue::Text("other data");
  Tick();
  values.erase(values.begin());
  Add(kRun, "c");
  Tick();
  values.pop_back();
  Tick();
  EXPECT_THAT(questions.asked, IsEmpty());
  Add(kRun, "d");
  Add(kRun, "e");
  Tick();
  ASSERT_EQ(questions.asked.size(), 1U) << "two at once are one report";
  EXPECT_THAT(questions.asked[0].text, HasSubstr("Value Name: e\r\n"));
  Tick();
  EXPECT_EQ(questions.asked.size(), 1U);
}

TEST_F(TrojanMonTest, TheHuntGetsThePathOfTheLastChangeWhateverTheAnswer) {
  host.paths.searchPath = {{"bad.exe", "/drive/bad.exe"}};
  watch.StartTrojanSentry();
  Tick();
  EXPECT_THAT(hunted, ElementsAre("")) << "it runs on each tick";
  questions.answers = {Answer::No};
  Add(kRun, "new", "bad.exe");
  Tick();
  EXPECT_EQ(hunted.back(), "/drive/bad.exe");
  Ini("win.ini windows load") = "bad.exe -with arguments";
  Tick();
  EXPECT_EQ(hunted.back(), "");
  Tick();
  EXPECT_EQ(questions.asked.size(), 2U);
}

TEST_F(TrojanMonTest, WhatTheHuntLeavesComesBackToItThroughTheSearchPath) {
  host.paths.searchPath = {{"bad.exe", "/drive/bad.exe"}, {"/drive/bad.exe", "/drive/bad.exe"}};
  hunt = [](std::string&) {};
  watch.StartTrojanSentry();
  Add(kRun, "new", "bad.exe");
  Tick();
  Tick();
  EXPECT_THAT(hunted, ElementsAre("/drive/bad.exe", "/drive/bad.exe"));
  host.paths.searchPath.clear();
  Tick();
  EXPECT_EQ(hunted.back(), "");
}

TEST_F(TrojanMonTest, WhatComesDuringAQuestionIsAccepted) {
  watch.StartTrojanSentry();
  questions.whileAsking = [&] {
    Add(kMachineRun, "second");
    Ini("win.ini windows run") = "second";
  };
  Add(kRun, "first");
  Tick();
  questions.whileAsking = {};
  Tick();
  EXPECT_EQ(questions.asked.size(), 1U);
}

TEST_F(TrojanMonTest, SwitchedDuringAQuestionItNeitherFailsNorDeletes) {
  watch.StartTrojanSentry();
  questions.answers = {Answer::Yes};
  questions.whileAsking = [&] { watch.StopTrojanSentry(); };
  Add(kMachineRun, "first");
  Tick();
  EXPECT_FALSE(Runs());
  EXPECT_EQ(host.registry.keys[kMachineRun].size(), 1U);
  EXPECT_EQ(questions.asked.back().title, "Remove Unsuccessful") << "its key is closed";

  // Started anew, the lists of the keys behind are not dimensioned any more.
  questions.whileAsking = [&] {
    watch.StopTrojanSentry();
    watch.StartTrojanSentry();
  };
  watch.StartTrojanSentry();
  Add(kMachineRun, "second");
  Tick();
  EXPECT_TRUE(Runs());
}

struct TrojanSwitchTest : testing::Test {
  test::FakeHost host;
  void SetUp() override {
    host.ImportPresets(0, 1);
    host.Setting("Trojan Sentry") = RegistryValue::Dword(1);
  }
};

TEST_F(TrojanSwitchTest, TheSettingStartsItAndTheMenuSwitchesItForGood) {
  test::Program program(host);
  program.Start();
  auto& form = program.tallowin.MainForm();
  EXPECT_THAT(program.Log(), ElementsAre("Verbose Mode Enabled", "Port Sentry Disactivated",
                                         "Port Sentry Deactivated", "Trojan Sentry Enabled",
                                         "Trojan Sentry Deactivated", "Trojan Sentry Activated",
                                         "Always On Top Disabled", "IdentD Server Deactivated"));
  const std::size_t before = program.Log().size();
  host.loop.Deliver([&] { form.ActiveMonMnu.Click(); });
  EXPECT_EQ(program.tallowin.Options().ActiveMonChk.Value(), 0);
  EXPECT_EQ(host.Setting("Trojan Sentry"), RegistryValue::Dword(0));
  host.loop.Deliver([&] { program.tallowin.Options().ActiveMonChk.SetValue(1); });
  EXPECT_TRUE(form.ActiveMonMnu.Checked());
  host.loop.Deliver([&] { program.tallowin.Options().ActiveMonChk.SetValue(2); });
  EXPECT_THAT(
      program.Log(before),
      ElementsAre("Trojan Sentry Disabled", "Trojan Sentry Deactivated", "Trojan Sentry Enabled",
                  "Trojan Sentry Deactivated", "Trojan Sentry Activated"));
  host.loop.Deliver([&] { program.tallowin.UpdateSentry("TROJAN"); });
  EXPECT_EQ(program.Log().size(), before + 7);
}

TEST_F(TrojanSwitchTest, AStoredZeroStillWritesItsLinesAndAFailedStartKeepsTheTick) {
  host.Setting("Trojan Sentry") = RegistryValue::Dword(0);
  test::Program off(host);
  off.Start();
  EXPECT_THAT(off.Log(),
              testing::IsSupersetOf({"Trojan Sentry Disabled", "Trojan Sentry Deactivated"}));
  EXPECT_FALSE(off.tallowin.MainForm().ActiveMonMnu.Checked());

  host.registry.keys[kRun];
  host.registry.locked = {kRun};
  host.loop.Deliver([&] { off.tallowin.MainForm().ActiveMonMnu.Click(); });
  EXPECT_FALSE(host.loop.Ticks(std::chrono::milliseconds(300)));
  EXPECT_TRUE(off.tallowin.MainForm().ActiveMonMnu.Checked());
  EXPECT_EQ(off.tallowin.Options().ActiveMonChk.Value(), 1);
}

}  // namespace
}  // namespace tallowin::trojansentry
