#include "LinuxWinsockTest.h"

#include <vector>

namespace tallowin::platform::linux_host {
namespace {

TEST_F(LinuxWinsockTest, TextArrivesWholeAndThenAPoliteEndWhateverTheCallerSends) {
  const std::string text(1'000'000, 't');  // More than the caller's side takes unread.
  bool closed = false;
  Listen([&](std::int32_t requestID) {
    socket->Accept(requestID);
    socket->SendData(text);
    socket->Close();
    closed = true;
  });
  TestClient client(port);
  client.Send("a probe that nobody asked for");
  ASSERT_TRUE(Until([&] { return closed; }));
  client.Send("and more of it behind the close");
  loop.DoEvents();
  ASSERT_TRUE(Until([&] { return client.Over(); }));
  EXPECT_EQ(client.Received().size(), text.size());
  EXPECT_EQ(client.End(), 0);
}

TEST_F(LinuxWinsockTest, ARefusalThatTakesLongLosesNobody) {
  using namespace std::chrono_literals;
  std::unique_ptr<TestClient> second;
  int callers = 0;
  Listen([&](std::int32_t) {
    ++callers;
    listener->Close();
    if (callers == 1) {
      // What runs nested between the close and the next listening takes its time, and meanwhile
      // somebody calls.
      const auto start = std::chrono::steady_clock::now();
      second = std::make_unique<TestClient>(port);
      while (std::chrono::steady_clock::now() - start < 400ms) loop.DoEvents();
    }
    listener->Listen();
  });
  TestClient first(port);
  ASSERT_TRUE(Until([&] { return callers == 2 && first.Over() && second->Over(); }));
  EXPECT_EQ(second->End(), ECONNRESET);
}

TEST_F(LinuxWinsockTest, ASlowReaderGetsAllAndADeafOneHoldsUpNobody) {
  const std::string text(5'000'000, 't');
  int served = 0;
  Listen([&](std::int32_t requestID) {
    socket->Accept(requestID);
    socket->SendData(text);
    socket->SendData("end");
    socket->Close();
    ++served;
  });
  TestClient deaf(port);
  TestClient slow(port);
  ASSERT_TRUE(Until([&] { return served == 2; }));
  ASSERT_TRUE(Until([&] { return slow.Over(); }));
  EXPECT_EQ(slow.Received().size(), text.size() + 3);
  EXPECT_EQ(slow.End(), 0);
}

TEST_F(LinuxWinsockTest, WrongUsesFailWithTheNumbersOfTheSocketLibrary) {
  Listen([](std::int32_t) {});
  socket->SetLocalPort(port);
  EXPECT_EQ(ErrorOf([&] { socket->Listen(); }), 10048);
  EXPECT_EQ(socket->State(), SocketState::Closed);
  EXPECT_EQ(ErrorOf([&] { listener->Listen(); }), 10022);
  EXPECT_EQ(ErrorOf([&] { listener->Connect(); }), 10022);
  EXPECT_EQ(ErrorOf([&] { socket->Accept(12345); }), 10022);
  EXPECT_EQ(ErrorOf([&] { socket->SendData("x"); }), 10057);
  socket->SetLocalPort(70000);
  EXPECT_EQ(ErrorOf([&] { socket->Listen(); }), 10049);
  EXPECT_EQ(ErrorOf([&] { socket->SetRemotePort(-1); }), 380);
  EXPECT_EQ(socket->GetData(), "");
  listener->Close();
  socket->SetLocalPort(port);
  socket->Listen();  // What another socket of ours has just closed is free.
  EXPECT_EQ(socket->LocalPort(), port);
}

TEST_F(LinuxWinsockTest, AcceptOnABusySocketResetsTheSecondCaller) {
  std::vector<int> results;
  Listen([&](std::int32_t requestID) {
    results.push_back(ErrorOf([&] { socket->Accept(requestID); }));
  });
  TestClient first(port);
  TestClient second(port);
  ASSERT_TRUE(Until([&] { return second.Over(); }));
  EXPECT_EQ(results, (std::vector{0, 10056}));
  EXPECT_EQ(second.End(), ECONNRESET);
  EXPECT_FALSE(first.Over());
  EXPECT_EQ(socket->LocalPort(), port);
  EXPECT_EQ(socket->RemoteHostIP(), "127.0.0.1");
}

TEST_F(LinuxWinsockTest, HoldsTheNewestCallersUntilTheListenerCloses) {
  std::vector<std::int32_t> requests;
  Listen([&](std::int32_t requestID) { requests.push_back(requestID); });
  std::deque<TestClient> clients;
  for (int i = 0; i < 33; ++i) clients.emplace_back(port);
  ASSERT_TRUE(Until([&] { return requests.size() == 33; }));
  EXPECT_TRUE(Until([&] { return clients[0].Over(); }));
  EXPECT_EQ(clients[0].End(), ECONNRESET);
  clients.pop_front();
  for (TestClient& client : clients) EXPECT_FALSE(client.Over());

  listener->Close();
  socket->Accept(requests.back());
  loop.DoEvents();
  EXPECT_FALSE(clients.back().Over()) << "Accepted after the Close, before the next pass.";
  clients.pop_back();
  for (TestClient& client : clients) {
    EXPECT_TRUE(Until([&] { return client.Over(); }));
    EXPECT_EQ(client.End(), ECONNRESET);
  }
  EXPECT_EQ(ErrorOf([&] { factory.MakeWinsock()->Accept(requests.front()); }), 10022);
}

TEST_F(LinuxWinsockTest, AClosedPortIsRefusedSoon) {
  Listen([](std::int32_t) {});
  listener->Close();
  // No pass is nested here, as none is in a program that waits for its next event. The timer that
  // is looked at keeps the loop awake.
  const auto awake = loop.MakeTimer(std::chrono::milliseconds(5), [] {});
  awake->SetEnabled(true);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  loop.RunUntil([&] {
    return TestClient(port).End() == ECONNREFUSED || std::chrono::steady_clock::now() > deadline;
  });
  EXPECT_EQ(TestClient(port).End(), ECONNREFUSED);
  listener->Listen();
  EXPECT_EQ(TestClient(port).End(), TestClient::kOpen);
  listener.reset();
  EXPECT_EQ(TestClient(port).End(), ECONNREFUSED);
}

TEST_F(LinuxWinsockTest, AHandlerMayDestroyItsSocket) {
  Listen([&](std::int32_t requestID) {
    socket->Accept(requestID);
    listener.reset();
  });
  std::string told;
  socket->SetEvents({.DataArrival = [&](std::int32_t) {
    socket.reset();
    told += "data ";
  }});
  auto caller = factory.MakeWinsock();
  caller->SetRemoteHost("127.0.0.1");
  caller->SetRemotePort(port);
  caller->SetEvents({.Connect = [&] { caller->SendData("x"), told += "connect "; },
                     .Close = [&] { caller.reset(), told += "close "; },
                     .Error = [&](int, const std::string&) { caller.reset(); }});
  caller->Connect();
  EXPECT_TRUE(Until([&] { return !caller && !socket; }));
  EXPECT_TRUE(told.starts_with("connect data ")) << told;
}

TEST_F(LinuxWinsockTest, TheAddressIsThatOfTheHandlersOwnCallerAlsoAfterANestedOne) {
  std::string seen;
  int requests = 0;
  Listen([&](std::int32_t) {
    const std::string mine = listener->RemoteHostIP();
    const bool first = ++requests == 1;
    EXPECT_TRUE(Until([&] { return !first || requests == 2; }));
    EXPECT_EQ(listener->RemoteHostIP(), mine);
    seen += mine + " ";
  });
  TestClient one(port, "127.0.0.2");
  TestClient two(port, "127.0.0.3");
  ASSERT_TRUE(Until([&] { return seen.size() == 20; }));
  EXPECT_EQ(seen, "127.0.0.3 127.0.0.2 ");
}

TEST_F(LinuxWinsockTest, NestingIsBoundedAndEveryWaitingCallerIsServed) {
  int depth = 0;
  int deepest = 0;
  int served = 0;
  Listen([&](std::int32_t requestID) {
    deepest = std::max(deepest, ++depth);
    for (int i = 0; i < 5; ++i) loop.DoEvents();
    auto own = factory.MakeWinsock();
    own->Accept(requestID);
    own->SendData("served");
    own->Close();
    --depth;
    ++served;
  });
  std::deque<TestClient> clients;
  for (int i = 0; i < 100; ++i) clients.emplace_back(port);
  ASSERT_TRUE(AllOver(clients));
  EXPECT_EQ(served, 100);
  EXPECT_EQ(deepest, EventLoop::MaxNesting);
  for (const TestClient& client : clients) EXPECT_EQ(client.Received(), "served");
}

TEST_F(LinuxWinsockTest, ConnectTellsItsOutcome) {
  std::string told;
  socket->SetEvents(
      {.Connect = [&] { told = "connected"; },
       .Error = [&](int number,
                    const std::string& text) { told = std::to_string(number) + " " + text; }});
  const auto outcome = [&](const std::string& host, int remotePort) {
    told.clear();
    socket->Close();
    socket->SetRemoteHost(host);
    socket->SetRemotePort(remotePort);
    socket->Connect();
    EXPECT_TRUE(Until([&] { return !told.empty(); }));
    return told;
  };
  Listen([](std::int32_t) {});
  EXPECT_EQ(outcome("localhost", port), "connected");
  EXPECT_EQ(socket->RemoteHostIP(), "127.0.0.1");
  EXPECT_EQ(outcome("", port), "10049 Cannot assign requested address");
  EXPECT_EQ(outcome(std::string(70, 'x'), port), "11001 Host not found");
  listener.reset();
  EXPECT_EQ(outcome("127.0.0.1", port), "10061 Connection refused");
  EXPECT_EQ(socket->State(), SocketState::Error);
}

TEST_F(LinuxWinsockTest, DataIsToldBeforeTheEndThatFollowsIt) {
  Listen([&](std::int32_t requestID) { socket->Accept(requestID); });
  std::string told;
  const auto events =
      SocketEvents{.DataArrival = [&](std::int32_t) { told += socket->GetData() + " "; },
                   .Close = [&] { told += "closed"; },
                   .Error =
                       [&](int number, const std::string&) {
                         told += std::to_string(number) + " ";
                         EXPECT_EQ(socket->State(), SocketState::Error);
                       }};
  socket->SetEvents(events);
  TestClient polite(port);
  polite.Send("bye");
  polite.Close();
  ASSERT_TRUE(Until([&] { return socket->State() == SocketState::Closing; }));
  EXPECT_EQ(told, "bye closed");

  told.clear();
  socket->Close();
  TestClient rude(port);
  rude.Send("bye");
  rude.Reset();
  ASSERT_TRUE(Until([&] { return socket->State() == SocketState::Closing; }));
  EXPECT_EQ(told, "bye 10054 closed");
  EXPECT_EQ(ErrorOf([&] { socket->SendData("x"); }), 10057) << "Nobody is there any more.";
}

TEST_F(LinuxWinsockTest, AHandlerOfErrorThatClosesItsSocketGetsNoClose) {
  std::vector<std::int32_t> requests;
  Listen([&](std::int32_t requestID) { requests.push_back(requestID); });
  TestClient first(port);
  TestClient second(port);
  ASSERT_TRUE(Until([&] { return requests.size() == 2; }));
  int errors = 0;
  socket->SetEvents({.Close = [&] { ADD_FAILURE(); },
                     .Error =
                         [&](int, const std::string&) {
                           socket->Close();
                           if (++errors == 1) socket->Accept(requests[1]);
                           if (errors == 2) socket.reset();
                         }});
  socket->Accept(requests[0]);
  first.Reset();
  ASSERT_TRUE(Until([&] { return errors == 1; }));
  EXPECT_EQ(socket->State(), SocketState::Connected);
  second.Reset();
  EXPECT_TRUE(Until([&] { return !socket; }));
}

TEST_F(LinuxWinsockTest, WhatNobodyFetchesIsBoundedAndHidesNoEnd) {
  Listen([&](std::int32_t requestID) { socket->Accept(requestID); });
  std::int32_t mostAnnounced = 0;
  socket->SetEvents(
      {.DataArrival = [&](std::int32_t bytes) { mostAnnounced = std::max(mostAnnounced, bytes); }});
  TestClient client(port);
  for (int i = 0; i < 30; ++i) {
    client.Send(std::string(10000, static_cast<char>('a' + i)));
    for (int pass = 0; pass < 5; ++pass) loop.DoEvents();
  }
  client.Close();
  ASSERT_TRUE(Until([&] { return socket->State() == SocketState::Closing; }));
  EXPECT_EQ(mostAnnounced, 8192);
  const std::string kept = socket->GetData();
  EXPECT_EQ(kept.size(), 65536U);
  EXPECT_EQ(kept.substr(9999, 2), "ab");
}

}  // namespace
}  // namespace tallowin::platform::linux_host
