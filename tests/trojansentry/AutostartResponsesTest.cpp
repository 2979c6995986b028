#include "trojansentry/AutostartResponses.h"

#include "trojansentry/TrojanSentryTest.h"

namespace tallowin::trojansentry {
namespace {

using forms::Answer;
using forms::MessageBoxStyle;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

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
      "registry.\r\n"
      "This will cause the program to automatically load next time windows is booted.\r\n"
      "If you have just installed a legimate program, you should choose no.\r\n"
      "If you have installed a program from an unknown source, or think it may be suspicious, "
      "please choose yes.\r\n"
      "It is recommended that you disconnect your system from the internet as soon as possible, "
      "until you have removed the trojan.\r\n"
      "Details Of The Entry:\r\n"
      "\r\n"
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
      "file.\r\n"
      "This will cause the program to automatically load next time windows is booted.\r\n"
      "If you have just installed a legimate program, you should choose no.\r\n"
      "If you have installed a program from an unknown source, or think it may be suspicious, "
      "please choose yes.\r\n"
      "It is recommended that you disconnect your system from the internet as soon as possible, "
      "until you have removed the trojan.\r\n"
      "Details Of The Entry:\r\n"
      "\r\n"
      "INI File: " +
          module.SystemIniPath +
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
