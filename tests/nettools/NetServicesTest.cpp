#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nettools/IdentDServer.h"
#include "nettools/ModemHangUp.h"
#include "nettools/TimeSync.h"
#include "support/FakeHost.h"
#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using namespace std::chrono_literals;
using platform::SocketState;
using testing::ElementsAre;
using testing::IsEmpty;

struct IdentDServerTest : test::ProgramTest {
  test::FakeSockets::Socket* socket = nullptr;
  void SetUp() override {
    host.ImportPresets(0, 0);
    host.Setting("IdentD") = platform::RegistryValue::Dword(1);
    Start();
    Options().IdentDTxt.SetText("me");
    socket = host.sockets.ListeningOn(113);
    ASSERT_NE(socket, nullptr);
  }
  std::string Ask(const char* query) {
    socket->sent.clear();
    socket->events.ConnectionRequest(1);
    socket->received = query;
    socket->events.DataArrival(1);
    return socket->sent;
  }
};

TEST_F(IdentDServerTest, EventsBetweenAQueryAndItsReply) {
  EXPECT_EQ(Ask("6193, 23\r\n"), "6193, 23\r\n : USERID: UNIX: me");
  EXPECT_EQ(socket->state, SocketState::Listening);
  host.loop.pending = {[&] { socket->ServerSends("93, 23\r\n"); }};
  EXPECT_EQ(Ask("61"), "61 : USERID: UNIX: me") << "what comes later is not answered";
  host.loop.pending = {[&] { Options().IdentDChk.SetValue(0); }};
  EXPECT_EQ(Ask("6193, 23\r\n"), "");
  EXPECT_EQ(socket->state, SocketState::Closed) << "off stays off";
  Options().IdentDChk.SetValue(1);

  // A client that goes away in the middle, and a port that somebody took meanwhile, end nothing.
  socket->events.ConnectionRequest(2);
  host.sockets.takenPorts[113] = true;
  socket->state = SocketState::Closing;
  socket->events.DataArrival(10);
  socket->events.Error(10054, "Connection reset by peer");
  EXPECT_FALSE(host.loop.Ended());
}

TEST_F(IdentDServerTest, ACallerGetsNoReplyToAnotherOne) {
  // The first one resets while it waits for its reply, and the second one asks only later.
  host.loop.pending = {[&] {
    socket->events.Error(10054, "Connection reset by peer");
    socket->events.ConnectionRequest(2);
  }};
  EXPECT_EQ(Ask("1, 2"), "");
  EXPECT_EQ(socket->state, SocketState::Connected);
  socket->received = "3, 4";
  socket->events.DataArrival(4);
  EXPECT_EQ(socket->sent, "3, 4 : USERID: UNIX: me");

  std::string nested;
  host.loop.pending = {[&] {
    Options().IdentDChk.SetValue(0);
    Options().IdentDChk.SetValue(1);
    nested = Ask("5, 6");
  }};
  (void)Ask("1, 2");
  EXPECT_EQ(nested, "5, 6 : USERID: UNIX: me");
  EXPECT_EQ(socket->state, SocketState::Listening);
  EXPECT_EQ(Ask("7, 8"), "7, 8 : USERID: UNIX: me");
}

struct TimeSyncTest : test::ProgramTest {
  void SetUp() override { Up(0, 1); }
  void Minutes(int count) {
    for (int i = 0; i < count; ++i) host.loop.Tick(60000ms);
  }
  std::vector<std::string> Reply(const std::string& text) {
    host.sockets.udp.received = text;
    host.loop.Deliver([&] { host.sockets.udp.events.DataArrival(1); });
    return NewLines();
  }
};

TEST_F(TimeSyncTest, AsksEveryFifteenMinutesAndNowWhenTold) {
  Main().timesyncmnu.Click();
  EXPECT_THAT(NewLines(),
              ElementsAre("Time Sync Activated",
                          "Time will be synced every 15 minutes, if you wish to sync time now",
                          "choose Sync Time Now from Internet Utilities"));
  EXPECT_EQ(host.Setting("TimeSync"), platform::RegistryValue::Dword(1));
  Minutes(14);
  EXPECT_THAT(host.sockets.udp.sent, IsEmpty());
  Main().timesyncmnu.Click();
  EXPECT_FALSE(Main().timesyncmnu.Checked());
  EXPECT_THAT(NewLines(),
              ElementsAre("Time Sync Deactivated",
                          "Time will NOT be synced every 15 minutes, if you wish to sync time now",
                          "choose Sync Time Now from Internet Utilities"));
  Minutes(30);
  Main().timesyncmnu.Click();
  (void)NewLines();
  host.clock.bias = -330;
  Minutes(1);  // the count goes on where it stood
  EXPECT_EQ(host.sockets.udp.port, 13);
  EXPECT_THAT(host.sockets.udp.sent, ElementsAre("TimeRequest"));
  EXPECT_THAT(NewLines(),
              ElementsAre("Requested time from time server",
                          "Time Server: " + host.sockets.udp.host, "Bias from UTC: 6 hours"));

  host.sockets.udp.sendFailure = 10024;
  Main().synctimenowmnu.Click();
  EXPECT_THAT(NewLines(), ElementsAre("Error: 10024 Failed Code#: 0"));
  host.sockets.udp.events.Error(11001, "Host not found");
  EXPECT_THAT(NewLines(), ElementsAre("Error retrieving time: 11001 Host not found"));
}

TEST_F(TimeSyncTest, WhatIsNoTimeIsDroppedOrToldOfInVerboseModeOnly) {
  for (const char* text : {"", "2026", "Thu Nov 5 12:34:56 2026\n", "Thu Nov 5 12:34:56 26",
                           "Thu Nov 5 12:34:56-2026", "Thu Nov 5 12:34:56 20x6"}) {
    EXPECT_THAT(Reply(text), IsEmpty()) << text;
  }
  EXPECT_THAT(Reply("Thu Foo 5 12:34:56 2026"), ElementsAre("Error: 13 Type mismatch Code#: 0"));
  EXPECT_THAT(Reply(" 2026"), ElementsAre("13 Type mismatch", "Error: 13 Type mismatch Code#: 0"));
  EXPECT_THAT(Reply("Thu Nov x 12:34:56 2026"),
              ElementsAre("13 Type mismatch", "Error: 13 Type mismatch Code#: 0"));
  host.clock.allowed = false;
  EXPECT_EQ(Reply("Thu Nov 5 12:34:56 2026").back(), "Error: 70 Permission denied Code#: 0");
  Options().VerboseChk.SetValue(0);
  (void)NewLines();
  EXPECT_EQ(Reply("Thu Nov 5 12:34:56 2026").back(), "Local time adjusted to remote clock");
  EXPECT_THAT(host.clock.dates, IsEmpty()) << "a time that is refused leaves the date alone";
}

TEST(ModemHangUp, DropsTheLinksWithoutANameAndNoOther) {
  test::FakeDialUp dialUp;
  ModemHangUp modem(dialUp);
  modem.HangUpConnection();
  dialUp.links = {{"/1", "My provider"}, {"/2", ""}, {"/3", "  "}, {"/4", std::string("\0x", 2)}};
  modem.HangUpConnection();
  EXPECT_THAT(dialUp.hungUp, ElementsAre("/2", "/3", "/4"));

  dialUp.hungUp.clear();
  modem.ConnectionName = " My provider";
  modem.HangUpConnection();
  EXPECT_THAT(dialUp.hungUp, ElementsAre("/1"));

  dialUp.hungUp.clear();
  dialUp.result = platform::ras::kEnumerationFailed;
  modem.HangUpConnection();
  EXPECT_THAT(dialUp.hungUp, IsEmpty());
  EXPECT_EQ(modem.LastRasResult(), platform::ras::kEnumerationFailed);

  dialUp.supported = false;
  EXPECT_THROW(modem.HangUpConnection(), platform::RunTimeError);
}

}  // namespace
}  // namespace tallowin::nettools
