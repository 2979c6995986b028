#include "core/StatusLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "core/LineRoutines.h"
#include "support/FakeHost.h"

namespace tallowin::core {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

struct StatusLogTest : testing::Test {
  test::FakeHost host;
  MainForm mainForm;
  Options options;
  TallowinModule module{host.paths, host.system};
  StatusLog log{mainForm, options, module, host.loop, host.regional};
  const std::string stamp = test::kStamp;

  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& file : fs::directory_iterator(host.folder.Path() + "/Logs")) {
      names.push_back(file.path().filename());
    }
    return names;
  }
  std::string File() const {
    return test::ReadFile(host.folder.Path() + "/Logs/Log 9_16_2000 9_41_07 PM.log");
  }
};

TEST_F(StatusLogTest, LinesAreStampedAndShownByLevel) {
  std::string message = "for everybody";
  log.LogStatus(message, true);
  EXPECT_EQ(message, stamp + "for everybody");
  for (const int verbose : {0, 1, 2}) {
    options.VerboseChk.SetValue(verbose);
    log.LogStatus("detail " + std::to_string(verbose), false);
  }
  EXPECT_EQ(mainForm.Status.Text(), stamp + "for everybody\r\n" + stamp + "detail 1\r\n");
  EXPECT_EQ(mainForm.Status.SelStart(), mainForm.Status.Text().size());
}

TEST_F(StatusLogTest, EachLineLetsEventsRunNested) {
  host.loop.pending.push_back([&] { log.LogStatus("nested", true); });
  log.LogStatus("outer", true);
  log.LogStatus("last", true);
  EXPECT_EQ(mainForm.Status.Text(),
            stamp + "outer\r\n" + stamp + "nested\r\n" + stamp + "last\r\n");
}

TEST_F(StatusLogTest, ANotificationNeedsBothSettingsAndNotTheLine) {
  int mails = 0;
  log.OnNotify = [&] { ++mails; };
  options.SMTPTxt.SetText("mail.example");
  log.LogStatus("no address", true, true);
  options.EmailTxt.SetText("owner@example");
  log.LogStatus("not asked for", true);
  EXPECT_EQ(mails, 0);
  log.LogStatus("not shown, mailed all the same", false, true);
  EXPECT_EQ(mails, 1);
  options.SMTPTxt.SetText("");
  log.LogStatus("no server", true, true);
  EXPECT_EQ(mails, 1);
}

TEST_F(StatusLogTest, OnlyTheLengthOfTheNewLineRotates) {
  const auto message = [&](std::size_t length) { return std::string(length - stamp.size(), 'x'); };
  log.LogStatus("first", true);
  log.LogStatus(message(9999), true);
  log.LogStatus(message(9999), true);
  EXPECT_FALSE(fs::exists(host.folder.Path() + "/Logs"));

  log.LogStatus(message(10000), true);
  EXPECT_EQ(mainForm.Status.Text(), stamp + "Status Continued From Last Log\r\n" + stamp +
                                        "---\r\n" + stamp + message(10000) + "\r\n");
  EXPECT_THAT(File(), HasSubstr("\r\n" + stamp + "first\r\n"));
  EXPECT_THAT(File(), EndsWith("End Of Log... Continued In Next File\r\n\r\n"));

  // Longer still, the line gets a file of its own, and the pause keeps the rotation's from taking
  // its name.
  std::chrono::milliseconds slept{0};
  host.loop.whileAsleep = [&](std::chrono::milliseconds time) {
    slept += time;
    EXPECT_THAT(File(), EndsWith("\r\n" + stamp + message(10001) + "\r\n"));
    host.regional.time = "9:41:09 PM";
  };
  log.LogStatus(message(10001), true);
  EXPECT_EQ(slept.count(), 1500);
  EXPECT_EQ(Files().size(), 2U);
  EXPECT_EQ(CountLines(mainForm.Status.Text()), 3U) << "two lines, and behind the last line end";
  EXPECT_THAT(mainForm.Status.Text(), Not(HasSubstr("xxx")));
}

TEST_F(StatusLogTest, FilesAndTheCommandsOnThem) {
  log.LogStatus("kept", true);
  log.WriteLogFile(mainForm.Status.Text());
  EXPECT_EQ(File(), std::string("Tallowin Log - https://tallowin.marrowind.example/ - 9-16-2000 "
                                "9:41:07 PM\r\n") +
                        stamp + "kept\r\n\r\n");
  EXPECT_THAT(mainForm.Status.Text(), EndsWith(":Wrote Log To File: " + host.folder.Path() +
                                               "/Logs/Log 9_16_2000 9_41_07 PM.log\r\n"));

  log.ClearLog();
  EXPECT_EQ(mainForm.Status.Text(), "");
  EXPECT_THAT(File(), HasSubstr("kept"));
  EXPECT_THAT(Files(), ElementsAre("Log 9_16_2000 9_41_07 PM.log")) << "one a second";

  std::ofstream(host.folder.Path() + "/Logs/notes.txt") << "mine";
  std::ofstream(host.folder.Path() + "/Logs/OLD.LOG") << "any case";
  fs::create_directory(host.folder.Path() + "/Logs/folder.log");
  log.RemoveLogFiles();
  EXPECT_THAT(Files(), UnorderedElementsAre("folder.log", "notes.txt"));
}

TEST_F(StatusLogTest, AFolderThatCannotBeMadeIsPassedOver) {
  std::ofstream(host.folder.Path() + "/Logs") << "in the way";
  log.WriteLogFile("text");
  EXPECT_THAT(mainForm.Status.Text(), HasSubstr("Wrote Log To File: "));
  log.RemoveLogFiles();
  EXPECT_EQ(test::ReadFile(host.folder.Path() + "/Logs"), "in the way");
}

TEST(LineRoutines, CountAndGet) {
  EXPECT_EQ(CountLines("a\r\nb\r\n"), 3U);
  EXPECT_EQ(CountLines("a\r\nb"), 2U);
  EXPECT_EQ(CountLines("a\rb\r"), 2U);
  EXPECT_EQ(CountLines("a\nb"), 1U);
  EXPECT_EQ(GetLine("a\r\nb\r\n", 2), "b");
  EXPECT_EQ(GetLine("a\r\nb\r\n", 3), "");
  EXPECT_EQ(GetLine("a\r\nb", 2), "b");
  EXPECT_EQ(GetLine("a\nb", 1), "ab");
  EXPECT_EQ(GetLine("a", 0), "");
  EXPECT_EQ(GetLine("a", 9), "");
}

TEST(LineRoutines, TheTailIsWhatGetLineGivesFromTheStart) {
  // Every text of up to six pieces, so with line ends of all kinds, empty lines, none at all.
  const std::string_view pieces[] = {"a", "\r", "\n", "\r\n"};
  for (unsigned number = 0; number < 4U * 4 * 4 * 4 * 4 * 4; ++number) {
    std::string text;
    for (unsigned rest = number; rest > 0; rest /= 4) text += pieces[rest % 4];
    for (const std::size_t back : {0U, 1U, 2U, 3U, 20U}) {
      std::vector<std::string> expected;
      const std::size_t count = CountLines(text);
      for (std::size_t i = count - back; count >= back && i <= count; ++i) {
        expected.push_back(GetLine(text, i));
      }
      ASSERT_EQ(LastLines(text, back), expected) << testing::PrintToString(text) << " " << back;
    }
  }
}

}  // namespace
}  // namespace tallowin::core
