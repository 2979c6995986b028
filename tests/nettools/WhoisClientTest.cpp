#include "nettools/WhoisClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using test::Packed;
using testing::ElementsAre;

constexpr const char* kServers[] = {"", "whois.apnic.net", "whois.ripe.net", "whois.radb.net",
                                    "whois.arin.net"};

struct WhoisClientTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;
  std::size_t start = 0;

  void SetUp() override {
    host.ImportPresets(0, 1);
    host.names.addresses["target.test"] = Packed(192, 0, 2, 7);
    program = std::make_unique<test::Program>(host);
    program->Start();
    start = program->Log().size();
  }
  core::MainForm& Form() { return program->tallowin.MainForm(); }
  void Press(const std::string& target) {
    Form().LoggedIPs.SetText(target);
    Form().Toolbar1.Click("whois");
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
    auto* list = dynamic_cast<forms::ItemList*>(
        program->tallowin.Forms().Find("reporthacker")->Find("emaillist"));
    std::vector<std::string> entries;
    for (std::size_t i = 0; i < list->ListCount(); ++i) entries.push_back(list->List(i));
    return entries;
  }
};

TEST_F(WhoisClientTest, AsksAllFourInTurnAndHarvestsTheWholeLog) {
  const auto before = host.sockets.all.size();
  program->tallowin.MainForm().Status.AppendText("old@earlier.example\r\n");
  start = program->Log().size();
  Press("target.test");
  EXPECT_EQ(Form().LoggedIPs.Text(), "192.0.2.7");
  EXPECT_FALSE(Form().LoggedIPs.Enabled());
  EXPECT_TRUE(Form().Toolbar1.Enabled());
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
  Form().LoggedIPs.SetText("192.0.2.8");
  auto& third = Server(3);
  third.ServerAccepts();
  EXPECT_EQ(third.sent, "192.0.2.8\r\n");
  third.ServerCloses();
  Answer(4, "e-mail: mailto:abuse@isp.example noc@arin.example");

  EXPECT_THAT(program->Log(start),
              ElementsAre("", "Whois Results For 192.0.2.7 Started", "", "Whois results...:",
                          "info", "noc@net.exa", "Whois results...:", "mple", "",
                          "Whois results...:", "e-mail: mailto:abuse@isp.example noc@arin.example",
                          "Whois Results For 192.0.2.8 Completed", ""));
  EXPECT_THAT(Emails(), ElementsAre("old@earlier.example", "noc@net.exa", "abuse@isp.example"));
  EXPECT_TRUE(Form().LoggedIPs.Enabled());
  EXPECT_EQ(host.sockets.all.size(), before);
}

TEST_F(WhoisClientTest, ASecondStartFailsAtAnyPointOfARunAndTheRunContinues) {
  Press("192.0.2.7");
  for (int number = 1; number <= 4; ++number) {
    Form().Toolbar1.Click("whois");
    EXPECT_EQ(program->Log().back(), "Error 360 occured");
    EXPECT_FALSE(Form().LoggedIPs.Enabled());
    EXPECT_TRUE(Form().Toolbar1.Enabled());
    Answer(number, "");
  }
  EXPECT_TRUE(Form().LoggedIPs.Enabled());
  Press("192.0.2.7");
  Server(1).ServerFails(11001, "Host not found");
  EXPECT_EQ(program->Log().back(), "Error - You are not connected to the internet");
  EXPECT_NE(host.sockets.ConnectingTo(kServers[2]), nullptr) << "the next run goes its way";
}

TEST_F(WhoisClientTest, AnUnknownNameIsAskedAboutAsTheBroadcastAddress) {
  Press("nobody.test");
  auto& first = Server(1);
  first.ServerAccepts();
  EXPECT_EQ(first.sent, "255.255.255.255\r\n");
}

}  // namespace
}  // namespace tallowin::nettools
