#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "forms/Form.h"
#include "nettools/WhoisClient.h"
#include "nettools/WhoisText.h"
#include "support/FakeHost.h"
#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using test::Packed;
using testing::ElementsAre;

constexpr const char* kServers[] = {"", "whois.apnic.net", "whois.ripe.net", "whois.radb.net",
                                    "whois.arin.net"};

struct WhoisClientTest : test::ProgramTest {
  void SetUp() override {
    host.names.addresses["target.test"] = Packed(192, 0, 2, 7);
    Up(0, 1);
  }
  void Press(const std::string& target) {
    Main().LoggedIPs.SetText(target);
    Main().Toolbar1.Click("whois");
  }
  test::FakeSockets::Socket& Server(int number) {
    auto* socket = host.sockets.ConnectingTo(kServers[number]);
    if (socket == nullptr)
      throw std::logic_error("not connecting to server " + std::to_string(number));
    return *socket;
  }
  void Answer(int number, const std::string& text) {
    auto& server = Server(number);
    server.ServerAccepts();
    if (!text.empty()) server.ServerSends(text);
    server.ServerCloses();
  }
  std::vector<std::string> Emails() {
    return test::Items(program->tallowin.ReportHacker().emaillist);
  }
};

TEST_F(WhoisClientTest, AsksAllFourInTurnAndHarvestsTheWholeLog) {
  const auto before = host.sockets.all.size();
  Main().Status.AppendText("old@earlier.example\r\n");
  (void)NewLines();
  Press("target.test");
  EXPECT_EQ(Main().LoggedIPs.Text(), "192.0.2.7");
  EXPECT_FALSE(Main().LoggedIPs.Enabled());
  EXPECT_TRUE(Main().Toolbar1.Enabled());
  EXPECT_EQ(host.sockets.all.size(), before + 4);

  auto& first = Server(1);
  EXPECT_EQ(first.remotePort, 43);
  EXPECT_EQ(host.sockets.ConnectingTo(kServers[2]), nullptr) << "one after the other";
  first.ServerAccepts();
  EXPECT_EQ(first.sent, "192.0.2.7\r\n");
  first.ServerSends("% info\nnoc@net.exa");
  first.ServerSends("mple\n");
  first.ServerCloses();
  EXPECT_EQ(host.sockets.all.size(), before + 3) << "unloaded when it is done";

  Answer(2, "");
  // Somebody calls meanwhile: the servers still to come are asked about him.
  Main().LoggedIPs.SetText("192.0.2.8");
  auto& third = Server(3);
  third.ServerAccepts();
  EXPECT_EQ(third.sent, "192.0.2.8\r\n");
  third.ServerCloses();
  Answer(4, "e-mail: mailto:abuse@isp.example noc@arin.example");

  EXPECT_THAT(NewLines(),
              ElementsAre("", "Whois Results For 192.0.2.7 Started", "", "Whois results...:",
                          "info", "noc@net.exa", "Whois results...:", "mple", "",
                          "Whois results...:", "e-mail: mailto:abuse@isp.example noc@arin.example",
                          "Whois Results For 192.0.2.8 Completed", ""));
  EXPECT_THAT(Emails(), ElementsAre("old@earlier.example", "noc@net.exa", "abuse@isp.example"));
  EXPECT_TRUE(Main().LoggedIPs.Enabled());
  EXPECT_EQ(host.sockets.all.size(), before);
}

TEST_F(WhoisClientTest, ASecondStartFailsAtAnyPointOfARunAndTheRunContinues) {
  Press("192.0.2.7");
  for (int number = 1; number <= 4; ++number) {
    Main().Toolbar1.Click("whois");
    EXPECT_EQ(program->Log().back(), "Error 360 occured");
    EXPECT_FALSE(Main().LoggedIPs.Enabled());
    EXPECT_TRUE(Main().Toolbar1.Enabled());
    Answer(number, "");
  }
  EXPECT_TRUE(Main().LoggedIPs.Enabled());
  Press("192.0.2.7");
  Server(1).ServerFails(11001, "Host not found");
  EXPECT_EQ(program->Log().back(), "Error - You are not connected to the internet");
  EXPECT_NE(host.sockets.ConnectingTo(kServers[2]), nullptr) << "the next run goes its way";
}

TEST_F(WhoisClientTest, WhereTheFourthServerFailsTheListStaysAsItWas) {
  for (const bool fails : {false, true}) {
    Press("192.0.2.7");
    Answer(1, fails ? "new@isp.example" : "before@isp.example");
    Server(2).ServerFails(10061, "Connection refused");
    Answer(3, "");
    if (!fails) Answer(4, "");
    if (fails) Server(4).ServerFails(10054, "Connection reset by peer");
    EXPECT_TRUE(Main().LoggedIPs.Enabled());
  }
  EXPECT_THAT(Emails(), ElementsAre("before@isp.example"));
  EXPECT_THAT(NewLines(), testing::IsSupersetOf({"Error On Whois Sock 2 - 10061 Connection refused",
                                                 "End Of Whois Results For 192.0.2.7"}));
}

TEST_F(WhoisClientTest, AnUnknownNameIsAskedAboutAsTheBroadcastAddress) {
  Press("nobody.test");
  auto& first = Server(1);
  first.ServerAccepts();
  EXPECT_EQ(first.sent, "255.255.255.255\r\n");
}

struct Report : forms::Form {
  Report() : Form("Report") {}
  forms::ListBox list{*this, "list"};

  std::vector<std::string> Extract(std::string_view status) {
    ExtractWhoisEmails(status, list);
    return test::Items(list);
  }
};

TEST(WhoisText, AnAnswerLosesPercentSignsAndItsLineFeedsBecomeLineEnds) {
  EXPECT_EQ(ReadableAnswer("  % note\r\n100%\nrole: x \n  "), "note\r\r\n100\r\nrole: x \r\n");
  EXPECT_EQ(ReadableAnswer(" % % "), "");
}

TEST(WhoisText, AddressesAreWordsWithAnAtAndADotBehindIt) {
  Report report;
  EXPECT_THAT(report.Extract("e-mail: mailto:noc@net.example\r\r\n"
                             "  two@a.example  <three@b.example>,\tfour@c.example\r\n"
                             "no@dot dot.no@ .\r\n"
                             "again: noc@net.example\r\n"
                             "NOC@net.example x@.\r\n"),
              ElementsAre("noc@net.example", "two@a.example", "<three@b.example>,\tfour@c.example",
                          "NOC@net.example", "x@."));
  // Only a line end with a CR in it ends a line, and a line feed inside a line joins words.
  EXPECT_THAT(report.Extract("a@b.c\nd"), ElementsAre("a@b.cd"));
  EXPECT_THAT(report.Extract(""), ElementsAre()) << "a run replaces what was there";
}

TEST(WhoisText, RegistriesAreLeftOutWhereverTheirLettersStand) {
  Report report;
  EXPECT_THAT(
      report.Extract("a@RIPE.net hostmaster@arin.net marina@karin.example striped@x.example "
                     "diana@x.example whoiss@x.example Mary@x.example"),
      ElementsAre("Mary@x.example"));
}

TEST(WhoisText, ALongLogIsReadOnceAndALongListKeepsSomeDuplicates) {
  Report report;
  std::string log;
  for (int i = 0; i < 200000; ++i) log += "a line without anything in it, as most of them are\r\n";
  for (int i = 0; i < 400; ++i) log += std::to_string(i) + "@x.example\r\n";
  log += "399@x.example\r\n0@x.example\r\n";
  const auto start = std::chrono::steady_clock::now();
  const auto found = report.Extract(log);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(found.size(), 401U) << "the first is found again, the last no more";
}

}  // namespace
}  // namespace tallowin::nettools
