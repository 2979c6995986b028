#include "support/Program.h"
#include "trojansentry/AutostartResponses.h"
#include "trojansentry/TrojanMon.h"
#include "trojansentry/TrojanSentryTest.h"

namespace tallowin::trojansentry {
namespace {

using TrojanMonTest = TrojanSentryTest;
using forms::Answer;
using forms::MessageBoxStyle;
using platform::RegistryValue;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(TrojanMonTest, AKeyThatCannotBeOpenedKeepsItFromStartingAndTheOthersAreTried) {
  host.registry.locked = {kMachineRun};
  EXPECT_FALSE(watch.OpenAutostartKeys());
  watch.StartTrojanSentry();
  EXPECT_FALSE(Runs());
  EXPECT_EQ(TakeLog(), "Trojan Sentry Deactivated\r\n");
  EXPECT_TRUE(host.registry.keys.contains(kRun));
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

TEST_F(TrojanMonTest, TheFirstValueThatIsTooLongHidesTheRest) {
  watch.StartTrojanSentry();
  auto& values = host.registry.keys[kRun];
  const auto seen = [&](const std::string& name, std::uint32_t type, std::size_t size) {
    values = {{name, {type, std::string(size, 'x')}}};
    Tick();
    const auto before = questions.asked.size();
    Add(kRun, "last");
    Tick();
    return questions.asked.size() > before;
  };
  namespace registry = platform::registry;
  EXPECT_TRUE(seen(std::string(239, 'n'), registry::kSz, 239)) << "with the NULs it is 240";
  EXPECT_FALSE(seen(std::string(240, 'n'), registry::kSz, 1));
  EXPECT_FALSE(seen("n", registry::kExpandSz, 240));
  EXPECT_TRUE(seen("n", registry::kBinary, 240));
  EXPECT_FALSE(seen("n", registry::kBinary, 241));
}

TEST_F(TrojanMonTest, EachTypeOfDataHasItsText) {
  using namespace std::string_literals;
  watch.StartTrojanSentry();
  const auto shown = [&](std::uint32_t type, const std::string& data) {
    host.registry.keys[kRun].clear();
    Tick();
    host.registry.keys[kRun] = {{"v", {type, data}}};
    Tick();
    const std::string& text = questions.asked.back().text;
    return text.substr(text.rfind("Value Data: ") + 12);
  };
  namespace registry = platform::registry;
  EXPECT_EQ(shown(registry::kExpandSz, "%x%"), "%x%");
  EXPECT_EQ(shown(registry::kDword, "\x04\x03\x02\x01"), "04 03 02 01 ");
  EXPECT_EQ(shown(registry::kBinary, "\xFF\0"s), "FF 00 ");
  EXPECT_EQ(shown(registry::kMultiSz, "a\0b"s), "a b");
  EXPECT_EQ(shown(6, "x"), "Not defined value_type=REG_LINK");
  EXPECT_EQ(shown(11, "x"), "value_type=11");
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
  EXPECT_THAT(
      program.Log(),
      ElementsAre("Verbose Mode Enabled", "Port Sentry Disactivated", "Port Sentry Deactivated",
                  "Trojan Sentry Enabled", "Trojan Sentry Deactivated", "Trojan Sentry Activated",
                  "Always On Top Disabled", "Time Sync Deactivated", "IdentD Server Deactivated"));
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

struct AutostartResponsesTest : TrojanSentryTest {
  void SetUp() override {
    Ini("system.ini boot shell") = "Explorer.exe";
    Ini("win.ini windows run") = "old.exe";
    watch.StartTrojanSentry();
    TakeLog();
  }
  [[nodiscard]] const test::ScriptedQuestions::Asked& Asked(std::size_t number) const {
    return questions.asked.at(number);
  }
};

const std::string kAdvice =
    "This will cause the program to automatically load next time windows is booted.\r\n"
    "If you have just installed a legimate program, you should choose no.\r\n"
    "If you have installed a program from an unknown source, or think it may be suspicious, "
    "please choose yes.\r\n"
    "It is recommended that you disconnect your system from the internet as soon as possible, "
    "until you have removed the trojan.\r\n"
    "Details Of The Entry:\r\n"
    "\r\n";
constexpr const char* kReversed =
    "If you have just installed a legimate program, you should choose yes.\r\n"
    "If you have installed a program from an unknown source, or think it may be suspicious, please "
    "choose no.\r\n";

TEST_F(AutostartResponsesTest, YesDeletesTheValueAndNothingIsLogged) {
  questions.answers = {Answer::Yes};
  Add(kMachineRun, "Trojan", "c:\\bad.exe /s");
  Tick();
  ASSERT_EQ(questions.asked.size(), 2U);
  EXPECT_EQ(Asked(0).title, "Remove Registry Entry?");
  EXPECT_EQ(Asked(0).style, MessageBoxStyle::YesNoInformation);
  EXPECT_EQ(
      Asked(0).text,
      "Tallowin has detected that a program has put itself into an autostart section of your "
      "registry.\r\n" +
          kAdvice +
          "Registry Key: HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\r\n"
          "Value Name: Trojan\r\n"
          "Value Data: c:\\bad.exe /s");
  EXPECT_EQ(Asked(1).text, "Successfully Removed Possible Trojan From Registry");
  EXPECT_EQ(Asked(1).title, "Item Removed");
  EXPECT_EQ(Asked(1).style, MessageBoxStyle::Information);
  EXPECT_THAT(host.registry.keys[kMachineRun], IsEmpty());
  EXPECT_EQ(sounds, 1);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(AutostartResponsesTest, TheAdviceOfTheOtherKeysPointsTheWrongWayAndYesStillDeletes) {
  questions.answers = {Answer::Yes, Answer::Ok, Answer::No};
  Add(kMachineServices, "service");
  Add(kRun, "user", "second.exe");
  host.paths.searchPath = {{"x", "/x"}, {"second.exe", "/second.exe"}};
  Tick();
  ASSERT_EQ(questions.asked.size(), 3U);
  EXPECT_THAT(Asked(0).text, HasSubstr(kReversed));
  EXPECT_THAT(Asked(0).text, HasSubstr("Registry Key: HKEY_LOCAL_MACHINE\\Software\\Microsoft\\"
                                       "Windows\\CurrentVersion\\RunServices\r\n"));
  EXPECT_THAT(host.registry.keys[kMachineServices], IsEmpty());
  EXPECT_THAT(Asked(2).text, HasSubstr(kReversed));
  EXPECT_THAT(Asked(2).text, HasSubstr("Registry Key: HKEY_CURRENT_USER\\Software"));
  EXPECT_EQ(host.registry.keys[kRun].size(), 1U);
  EXPECT_EQ(hunted.back(), "/second.exe") << "the last one counts";
  EXPECT_EQ(sounds, 2);
}

TEST_F(AutostartResponsesTest, AFailedDeletionIsToldOnceAndTheEntryAccepted) {
  questions.answers = {Answer::Yes};
  host.registry.deletion = platform::registry::kAccessDenied;
  Add(kRun, "Trojan");
  Tick();
  Tick();
  ASSERT_EQ(questions.asked.size(), 2U);
  EXPECT_EQ(Asked(1).text,
            "Trojan could not be removed from registry, please try removing manually");
  EXPECT_EQ(Asked(1).title, "Remove Unsuccessful");
  EXPECT_EQ(Asked(1).style, MessageBoxStyle::Stop);
}

TEST_F(AutostartResponsesTest, TheValueThatIsEnumeratedLastIsNamedThoughAnotherIsNew) {
  Add(kRun, "old", "old.exe");
  Tick();
  auto& values = host.registry.keys[kRun];
  values.insert(values.begin(), {"new", platform::RegistryValue::Dword(1)});
  questions.answers = {Answer::Yes};
  Tick();
  EXPECT_THAT(Asked(1).text, EndsWith("Value Name: old\r\nValue Data: old.exe"));
  ASSERT_EQ(values.size(), 1U);
  EXPECT_EQ(values[0].first, "new");
}

TEST_F(AutostartResponsesTest, AValueThatCannotBeReadAnyMoreIsStillAskedAbout) {
  host.registry.query = platform::registry::kNotFound;
  Add(kRun, "gone");
  Tick();
  EXPECT_THAT(Asked(0).text, EndsWith("Value Name: gone\r\nValue Data: "));
  EXPECT_EQ(hunted.back(), "");
}

TEST_F(AutostartResponsesTest, AnyDifferenceOfAnIniLineIsAskedAboutAndYesWritesTheOldText) {
  questions.answers = {Answer::Yes, Answer::Ok, Answer::No, Answer::Yes};
  Ini("system.ini boot shell") = "explorer.exe";  // the case only
  Ini("win.ini windows run") = "";
  Ini("win.ini windows load") = "c:\\bad.exe -x";
  Tick();
  ASSERT_EQ(questions.asked.size(), 5U);
  EXPECT_EQ(Asked(0).title, "Restore old INI value?");
  EXPECT_EQ(Asked(0).style, MessageBoxStyle::YesNoInformation);
  EXPECT_EQ(
      Asked(0).text,
      "Tallowin has detected that a program has put itself into an autostart section of an INI "
      "file.\r\n" +
          kAdvice + "INI File: " + module.SystemIniPath +
          "\r\n"
          "Section: [Boot]\r\n"
          "Value Name: Shell\r\n"
          "Old Value: Explorer.exe\r\n"
          "New Value: explorer.exe");
  EXPECT_EQ(Asked(1).text, "Successfully Removed Possible Trojan From INI");
  EXPECT_EQ(Asked(1).title, "Item Removed");
  EXPECT_EQ(Ini("system.ini boot shell"), "Explorer.exe");
  EXPECT_THAT(Asked(2).text, EndsWith("INI File: " + module.WinIniPath +
                                      "\r\nSection: [Windows]\r\nValue Name: Run\r\n"
                                      "Old Value: old.exe\r\nNew Value: "));
  EXPECT_EQ(Ini("win.ini windows run"), "") << "No accepts it";
  EXPECT_THAT(Asked(3).text, HasSubstr("Value Name: Load\r\nOld Value: \r\nNew Value: c:\\bad"));
  EXPECT_EQ(Ini("win.ini windows load"), "") << "the key stays, with nothing in it";
  EXPECT_EQ(sounds, 3);
  Tick();
  EXPECT_EQ(questions.asked.size(), 5U);
}

TEST_F(AutostartResponsesTest, AFailedRestoringIsToldAndTheOldTextIsTheOneThatWasShown) {
  questions.answers = {Answer::Yes};
  host.iniFiles.writable = false;
  Ini("win.ini windows run") = "bad.exe";
  Tick();
  ASSERT_EQ(questions.asked.size(), 2U);
  EXPECT_EQ(Asked(1).text, "Trojan could not be removed from INI, please try removing manually");
  EXPECT_EQ(Asked(1).title, "Remove Unsuccessful");
  EXPECT_EQ(Asked(1).style, MessageBoxStyle::Stop);

  host.iniFiles.writable = true;
  questions.answers = {Answer::Yes};
  questions.whileAsking = [&] {
    watch.StopTrojanSentry();
    watch.StartTrojanSentry();
  };
  Ini("win.ini windows run") = "worse.exe";
  Tick();
  EXPECT_EQ(Ini("win.ini windows run"), "bad.exe");
}

}  // namespace
}  // namespace tallowin::trojansentry
