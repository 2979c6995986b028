#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reporting/EventNotification.h"
#include "reporting/ReportHacker.h"
#include "reporting/UpdateCheck.h"
#include "support/Program.h"

namespace tallowin::reporting {
namespace {

using platform::RegistryValue;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr const char* kFrameTop =
    "Tallowin has automatically sent you this message because an event has occured\r\n"
    "Below are the last 20 lines of the log\r\n";
constexpr const char* kFrameEnd = "\r\nThank you for using Tallowin";

std::string Numbered(int first, int last) {
  std::string lines;
  for (int i = first; i <= last; ++i) lines += "line " + std::to_string(i) + "\r\n";
  return lines;
}

struct EventNotificationTest : test::ProgramTest {
  void SetUp() override {
    host.ImportPresets(1, 1);
    host.SetSlot(1, 23, core::action::kRefuse);
    host.SetSlot(2, 25, core::action::kSend);
    Start();
  }
  void SetUpMail(const std::string& email, const std::string& server, const std::string& icq) {
    Options().EmailTxt.SetText(email);
    Options().SMTPTxt.SetText(server);
    Options().ICQtxt.SetText(icq);
  }
  std::vector<std::string> Outcome() {
    auto log = program->Log();
    const auto end = std::find(log.rbegin(), log.rend(), "----Connected Attempt Ended----");
    return {end.base(), log.end()};
  }
};

TEST(EventNotification, TheTailOfTheLogStandsInItsFrame) {
  test::FakeHost host;
  core::MainForm mainForm;
  core::Options options;
  const core::TallowinModule module(host.paths, host.system);
  core::StatusLog log(mainForm, options, module, host.loop, host.regional);
  Mail mail(host.smtp, log, host.loop);
  const EventNotification notification(mainForm, options, mail);
  const auto composed = [&](const std::string& text) {
    mainForm.Status.SetText(text);
    return notification.ComposeMessage();
  };
  EXPECT_EQ(composed(Numbered(1, 100)), kFrameTop + Numbered(81, 100) + "\r\n" + kFrameEnd);
  EXPECT_EQ(composed(Numbered(1, 20)), kFrameTop + Numbered(1, 20) + "\r\n" + kFrameEnd);
  EXPECT_EQ(composed(Numbered(1, 19)),
            kFrameTop + std::string("\r\n") + Numbered(1, 19) + "\r\n" + kFrameEnd);
  EXPECT_EQ(composed(Numbered(1, 18)), kFrameTop + Numbered(1, 18) + "\r\n" + kFrameEnd);
  EXPECT_EQ(composed("a\nb\r\n"), std::string(kFrameTop) + "a\nb\r\n\r\n" + kFrameEnd);
}

TEST_F(EventNotificationTest, AFailureIsToldAndHoldsNothingUp) {
  SetUpMail("owner@home.example", "mail.example", "12345");
  host.smtp.statuses = {-7, 0};
  program->Call(23);
  EXPECT_THAT(Outcome(), ElementsAre("SMTP Notification Failed", "SMTP Error: -7",
                                     "SMTP Notification Successful"));
  Options().VerboseChk.SetValue(0);
  host.smtp.statuses = {0, 28};
  program->Call(23);
  EXPECT_THAT(Outcome(), ElementsAre("SMTP Notification Successful", "SMTP Notification Failed"));
  EXPECT_EQ(host.smtp.mails.size(), 4U);
}

TEST_F(EventNotificationTest, AnotherCallerSlipsInBehindTheSending) {
  SetUpMail("owner@home.example", "mail.example", "");
  host.smtp.whileSending = [&] {
    host.smtp.whileSending = nullptr;
    host.loop.Post([&] { program->Call(25); });
  };
  const auto before = program->Log().size();
  program->Call(23);
  EXPECT_THAT(host.smtp.calls,
              ElementsAre("init MainForm", "send owner@home.example", "init MainForm",
                          "send owner@home.example", "release", "release"));
  const auto log = program->Log(before);
  EXPECT_EQ(std::count(log.begin(), log.end(), "----Connected Attempt Ended----"), 2);
  EXPECT_EQ(log[log.size() - 2], "SMTP Notification Successful");
  EXPECT_EQ(log.back(), "SMTP Notification Successful");
}

TEST_F(EventNotificationTest, WhatCallersSentIsMailedAsPlainText) {
  SetUpMail("owner@home.example", "mail.example", "");
  host.Port(1, "Port Description") =
      RegistryValue::Text("\xFFraw\x1B[2J\rFrom: somebody \xC3\xA4\xE2\x80\xAE");
  program->Call(23);
  ASSERT_EQ(host.smtp.mails.size(), 1U);
  EXPECT_THAT(host.smtp.mails[0].szMessage,
              testing::HasSubstr(":Description Of This Port: \\xffraw\\x1b[2J\r\nFrom: somebody "
                                 "\xC3\xA4\\xe2\\x80\\xae\r\n"));
}

struct ReportHackerTest : test::ProgramTest {
  void SetUp() override {
    Up();
    Options().SMTPTxt.SetText("mail.test");
    for (const char* address : {"a@one.test", "b@two.test", "c@three.test"}) {
      Form().emaillist.AddItem(address);
    }
  }
  ReportHacker& Form() { return program->tallowin.ReportHacker(); }
  void Open() { Main().reporthackmnu.Click(); }
};

TEST_F(ReportHackerTest, PreviewFollowsNameAndAddress) {
  Open();
  EXPECT_TRUE(Form().Visible());
  EXPECT_FALSE(Form().Modal());
  EXPECT_EQ(Form().bodytxt.Text(), "Filled in from other txt box\r\n") << "no address, no change";
  Form().fromemail.SetText("me@home.test");
  EXPECT_EQ(Form().fromtxt.Text(), "me@home.test");
  Form().bodytxt.SetText("typed");
  Form().fromname.SetText("A. Name");
  EXPECT_EQ(Form().fromtxt.Text(), "A. Name <me@home.test>");
  EXPECT_THAT(Form().bodytxt.Text(), StartsWith("Dear Sir/Madam,\r\n\r\nI have been using Tallowin "
                                                "4 Hacker Defense Suite from \r\nhttps://"));
  EXPECT_THAT(Form().bodytxt.Text(), EndsWith("\r\nYours Sincerely,\r\nA. Name <me@home.test>"));

  Form().Command2.Click();
  EXPECT_FALSE(Form().Visible());
  Options().EmailTxt.SetText("other@home.test");
  Open();
  EXPECT_EQ(Form().fromemail.Text(), "me@home.test") << "loaded once";
}

TEST_F(ReportHackerTest, OneMailForAllWhomTheListAndTheUserName) {
  Options().EmailTxt.SetText("me@home.test");
  Open();
  Form().totxt.SetText("typed@home.test");
  for (const std::size_t i : {2U, 0U, 1U}) Form().emaillist.Select(i);
  EXPECT_EQ(Form().totxt.Text(), "a@one.test\r\nb@two.test\r\nc@three.test");
  Form().emaillist.Select(1);
  Form().totxt.SetText(Form().totxt.Text() + "\r\nd@four.test\r\n\r\n");
  host.smtp.statuses = {0, 7};
  Form().Command1.Click();
  ASSERT_EQ(host.smtp.mails.size(), 1U);
  const auto& mail = host.smtp.mails[0];
  EXPECT_EQ(mail.szTo, "a@one.test, c@three.test, d@four.test, ") << "one line end of two is cut";
  EXPECT_EQ(Form().totxt.Text(), "a@one.test\r\nc@three.test\r\nd@four.test\r\n");
  EXPECT_EQ(mail.szFrom, "me@home.test");
  EXPECT_EQ(mail.szDomainName, "mail.test");
  EXPECT_EQ(mail.szSubject, "Hacking attempt made on my machine.");
  EXPECT_EQ(mail.szMessage, Form().bodytxt.Text()) << "no log goes with it";
  EXPECT_EQ(host.smtp.calls.front(), "init reporthacker");
  EXPECT_EQ(program->Log().back(), "SMTP Notification Successful");
  EXPECT_TRUE(Form().Visible());
  Form().Command1.Click();
  EXPECT_EQ(program->Log().back(), "SMTP Notification Failed");
}

TEST_F(ReportHackerTest, TheToolTipIsTheEntryInTheEstimatedRow) {
  // 10 rows of 204 twips: (2040 - 40) / (8.5 * 20 + 30) are visible.
  ReportHacker::MouseOverList mouse{
      .x = 500, .y = 203, .listWidth = 1000, .listHeight = 2040, .fontSize = 8.5, .topIndex = 1};
  const auto toolTip = [&](double x, double y) {
    mouse.x = x;
    mouse.y = y;
    Form().emaillist_MouseMove(mouse);
    return Form().emaillist.ToolTip();
  };
  EXPECT_EQ(toolTip(500, 203), "b@two.test");
  EXPECT_EQ(toolTip(500, 205), "c@three.test");
  for (const auto& [x, y] :
       {std::pair(10, 203), std::pair(920, 203), std::pair(500, 10), std::pair(500, 1960)}) {
    EXPECT_EQ(toolTip(x, y), "c@three.test") << "left as it is at " << x << ", " << y;
  }
  EXPECT_EQ(toolTip(500, 1000), "") << "below the last entry";
}

constexpr const char* kFailed = "Error. Make sure you are connected to the internet and try again.";
constexpr const char* kNone = "No updates are currently available.";
constexpr const char* kFound = "An update is available. It is recommended that you upgrade.";

std::string File(const std::string& version) {
  return "Update 1\n" + version + "\n1 May\nhttps://get.test/\n-\none\r\ntwo\nx\nx\nx\nx\n";
}

struct UpdateCheckTest : test::ProgramTest {
  void SetUp() override { Up(); }
  AutoUpdate& Form() { return program->tallowin.AutoUpdate(); }
  void Open() {
    host.loop.Deliver([&] { program->tallowin.MainForm().checkupdates.Click(); });
  }
  std::string Check(const std::string& page) {
    host.http.page = page;
    host.loop.Deliver([&] { Form().Command1.Click(); });
    return Form().StatusTxt.Caption();
  }
};

TEST_F(UpdateCheckTest, ChecksBeforeItIsSeenAndAnewBehindEachClose) {
  host.http.page = File("99.5");
  host.http.whileReading = [&] {
    EXPECT_FALSE(Form().Visible());
    EXPECT_FALSE(Form().Command1.Enabled());
    EXPECT_EQ(Form().MousePointer(), forms::MousePointer::Hourglass);
    EXPECT_EQ(Form().StatusTxt.Caption(), "Checking For New Version...");
  };
  Open();
  host.http.whileReading = {};
  EXPECT_TRUE(Form().Visible());
  EXPECT_EQ(Form().MousePointer(), forms::MousePointer::Normal);
  EXPECT_NE(Form().InstVer.Caption(), "");
  EXPECT_EQ(Form().StatusTxt.Caption(), kFound);
  EXPECT_EQ(Form().LatestVer.Caption(), "99.5");
  EXPECT_EQ(Form().RlsDateTxt.Caption(), "1 May");
  EXPECT_EQ(Form().Text1.Text(), "one\r\ntwo");
  Form().Command2.Click();
  EXPECT_THAT(host.shell.opened, ElementsAre("Open https://get.test/"));
  Open();
  EXPECT_EQ(host.http.asked.size(), 1U);
  Form().PressCloseBox();
  Open();
  EXPECT_EQ(host.http.asked.size(), 2U);
}

TEST_F(UpdateCheckTest, OlderVersionsErrorPagesAndNoAnswer) {
  host.http.page = File("99.5");
  Open();
  EXPECT_EQ(Check("<html>\n<b>404</b>\nnow\n"), kFailed);
  EXPECT_EQ(Form().LatestVer.Caption(), "<b>404</b>");
  EXPECT_FALSE(Form().Command2.Enabled());
  EXPECT_EQ(Form().Text1.Text(), "one\r\ntwo") << "the notes stay";
  EXPECT_EQ(Check(""), kFailed);
  EXPECT_EQ(Form().LatestVer.Caption(), "");
  EXPECT_EQ(Check(File(Form().InstVer.Caption())), kNone);
  EXPECT_EQ(Check(File(" 0.99 ")), kNone);
  EXPECT_EQ(Check(File("99.5")), kFound);
  EXPECT_TRUE(Form().Command1.Enabled());
}

TEST_F(UpdateCheckTest, AVersionThatIsNoNumberAndMissingNotesEndTheProgram) {
  for (const auto& [page, number] : {std::pair(File("new"), "13"), std::pair(File("inf"), "13"),
                                     std::pair(std::string("UPDATE\n99\n"), "5")}) {
    test::FakeHost other;
    other.http.page = page;
    test::Program fallen(other);
    fallen.Start();
    other.loop.Deliver([&] { fallen.tallowin.MainForm().checkupdates.Click(); });
    EXPECT_TRUE(other.loop.Ended());
    EXPECT_THAT(fallen.questions.asked.back().text,
                testing::StartsWith(std::string("Run-time error '") + number + "'"));
  }
}

TEST_F(UpdateCheckTest, ALongAnswerTakesNoTimeThatGrowsWithItsSquare) {
  std::string page = "UPDATE\n99\n\n\n\n";
  page.append(1 << 20, '\n');
  EXPECT_EQ(Check(page), kFound);
  EXPECT_EQ(Form().Text1.Text().size(), 2 * ((1U << 20U) - 4) - 2);
}

}  // namespace
}  // namespace tallowin::reporting
