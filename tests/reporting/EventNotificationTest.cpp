#include "reporting/EventNotification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::reporting {
namespace {

using platform::RegistryValue;
using testing::ElementsAre;

constexpr const char* kFrameTop =
    "Tallowin has automatically sent you this message because an event has occured\r\n"
    "Below are the last 20 lines of the log\r\n";
constexpr const char* kFrameEnd = "\r\nThank you for using Tallowin";

std::string Numbered(int first, int last) {
  std::string lines;
  for (int i = first; i <= last; ++i) lines += "line " + std::to_string(i) + "\r\n";
  return lines;
}

struct EventNotificationTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;

  void SetUp() override {
    host.ImportPresets(1, 1);
    host.Port(1, "Socket Number") = RegistryValue::Dword(23);
    host.Port(1, "Action") = RegistryValue::Text("Don't accept connection");
    host.Port(2, "Socket Number") = RegistryValue::Dword(25);
    host.Port(2, "Action") = RegistryValue::Text("Accept connection send packet then disconnect");
    program = std::make_unique<test::Program>(host);
    program->Start();
  }
  core::Options& Options() { return program->tallowin.Options(); }
  void SetUpMail(const std::string& email, const std::string& server, const std::string& icq) {
    Options().EmailTxt.SetText(email);
    Options().SMTPTxt.SetText(server);
    Options().ICQtxt.SetText(icq);
  }
  /// The log behind the line that asks for the mail.
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

TEST_F(EventNotificationTest, OwnerAndPagerGetAMailEach) {
  SetUpMail("owner@home.example", "mail.example:2525", "12345");
  program->Call(25);
  EXPECT_THAT(host.smtp.calls,
              ElementsAre("init MainForm", "send owner@home.example", "release", "init MainForm",
                          "send 12345@pager.marrowind.example", "release"));
  for (const auto& mail : host.smtp.mails) {
    EXPECT_EQ(mail.szDomainName, "mail.example:2525");
    EXPECT_EQ(mail.szFrom, "notify@tallowin.marrowind.example");
    EXPECT_EQ(mail.szSubject, "Tallowin Event Notification");
    EXPECT_THAT(mail.szMessage,
                testing::EndsWith(std::string(test::kStamp) +
                                  "----Connected Attempt Ended----\r\n\r\n" + kFrameEnd))
        << "the line that asks for the mail is in it";
    EXPECT_EQ(mail.szMessage, host.smtp.mails[0].szMessage) << "made once, for both";
  }
  EXPECT_THAT(Outcome(),
              ElementsAre("SMTP Notification Successful", "SMTP Notification Successful"));

  Options().ICQtxt.SetText("");
  program->Call(23);
  EXPECT_EQ(host.smtp.mails.size(), 3U) << "who is refused is told of as well";
  EXPECT_THAT(Outcome(), ElementsAre("SMTP Notification Successful"));
}

TEST_F(EventNotificationTest, WithoutAddressOrServerNothingIsSentAndNothingSaid) {
  SetUpMail("", "mail.example", "12345");
  program->Call(23);
  SetUpMail("owner@home.example", "", "12345");
  program->Call(23);
  EXPECT_THAT(host.smtp.calls, ElementsAre());
  EXPECT_THAT(Outcome(), ElementsAre());
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

}  // namespace
}  // namespace tallowin::reporting
