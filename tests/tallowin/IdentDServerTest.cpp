#include "nettools/IdentDServer.h"

#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using platform::RegistryValue;
using platform::SocketState;

TEST(IdentDServer, EchoesTheQueryAndTheNameAndIsBackOnItsPort) {
  test::FakeHost host;
  host.ImportPresets(0, 0);
  host.Setting("IdentD") = RegistryValue::Dword(1);
  test::Program program(host);
  program.Start();
  EXPECT_EQ(program.Log().back(), "IdentD Server Activated");
  EXPECT_TRUE(program.tallowin.MainForm().identmnu.Checked());
  auto* socket = host.sockets.ListeningOn(113);
  ASSERT_NE(socket, nullptr);

  socket->events.ConnectionRequest(1);
  EXPECT_EQ(socket->state, SocketState::Connected) << "the one socket serves, and listens no more";
  program.tallowin.Options().IdentDTxt.SetText("me");
  socket->received = "6193, 23\r\n";
  socket->events.DataArrival(10);
  EXPECT_EQ(socket->sent, "6193, 23\r\n : USERID: UNIX: me");
  EXPECT_EQ(socket->state, SocketState::Listening);

  // A client that goes away in the middle, and a port that somebody took meanwhile, end nothing.
  socket->events.ConnectionRequest(2);
  host.sockets.takenPorts[113] = true;
  socket->state = SocketState::Closing;
  socket->events.DataArrival(10);
  socket->events.Error(10054, "Connection reset by peer");
  EXPECT_FALSE(host.loop.Ended());

  program.tallowin.MainForm().identmnu.Click();
  EXPECT_EQ(program.Log().back(), "IdentD Server Deactivated");
  EXPECT_EQ(host.Setting("IdentD"), RegistryValue::Dword(0));
}

}  // namespace
}  // namespace tallowin::nettools
