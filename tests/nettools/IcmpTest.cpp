#include "nettools/Icmp.h"

#include <gtest/gtest.h>

#include "support/FakeHost.h"

namespace tallowin::nettools {
namespace {

using platform::IcmpEchoReply;
using test::Packed;

const auto kTarget = Packed(192, 0, 2, 7);

struct Tools : testing::Test {
  test::FakeHost host;
  IcmpTools tools{host.icmp, host.names, host.loop};

  Tools() {
    host.names.addresses["target.test"] = kTarget;
    host.names.names[kTarget] = "target.test";
  }

  /// A chain of routers 10.0.0.1, 10.0.0.2 ... with the target behind `routers` of them.
  void BuildChain(int routers) {
    host.icmp.answer = [routers](const test::FakeIcmp::Echo& echo) {
      if (echo.ttl > routers) return std::optional(IcmpEchoReply{echo.destination, 0, 0});
      const auto router = static_cast<std::uint8_t>(echo.ttl);
      return std::optional(IcmpEchoReply{Packed(10, 0, 0, router), 11013, 0});
    };
  }
};

TEST_F(Tools, LookUpNamesAndAddresses) {
  EXPECT_EQ(tools.LookupHost("target.test"), "192.0.2.7");
  EXPECT_EQ(host.names.asked.size(), 2U) << "asked whether there is one, then which";
  EXPECT_EQ(tools.LookupHost("192.0.2.7"), "target.test");
  EXPECT_EQ(tools.LookupHost("192.0.2.8"), "Lookup failed");
  EXPECT_EQ(tools.LookupHost("nobody.test"), "Lookup failed");
  // The one address that is the number of failure, and so is looked up as a name.
  EXPECT_EQ(tools.TextToAddress("255.255.255.255"), -1);
  EXPECT_EQ(host.names.asked.back(), "255.255.255.255");

  host.names.names[kTarget] = std::string(300, 'n');
  EXPECT_EQ(tools.HostToName("target.test"), std::string(256, 'n'));
}

TEST_F(Tools, PingSendsOneEchoAndGivesANumberOrASentence) {
  std::string target = "target.test";
  host.icmp.answer = [](const auto& echo) {
    return std::optional(IcmpEchoReply{echo.destination, 0, 41});
  };
  EXPECT_EQ(tools.PingHost(target), "41");
  EXPECT_EQ(target, "192.0.2.7") << "the caller's name becomes its address";
  ASSERT_EQ(host.icmp.sent.size(), 1U);
  const auto& echo = host.icmp.sent.front();
  EXPECT_EQ(echo.destination, kTarget);
  EXPECT_EQ(echo.data, std::string(32, '\0'));
  EXPECT_EQ(echo.ttl, 255);
  EXPECT_EQ(echo.replySize, 163U);
  EXPECT_EQ(echo.timeout, std::chrono::milliseconds(2700));

  host.icmp.answer = [](const auto&) { return std::optional(IcmpEchoReply{0, 11003, 5}); };
  EXPECT_EQ(tools.PingHost(target), "Destination Host Not Reachable");
  // A status without words counts as none.
  host.icmp.answer = [](const auto&) { return std::optional(IcmpEchoReply{0, 11023, 5}); };
  EXPECT_EQ(tools.PingHost(target), "5");

  host.icmp.answer = nullptr;
  target = "nobody.test";
  EXPECT_EQ(tools.PingHost(target), "Request Timed Out");
  EXPECT_EQ(target, "Lookup failed");
  EXPECT_EQ(host.icmp.sent.back().destination, -1) << "the later steps run with the failure";
  EXPECT_EQ(host.icmp.openHandles, 0);

  host.icmp.available = false;
  EXPECT_EQ(tools.PingHost(target), "");
}

TEST_F(Tools, TraceCountsRepliesAndNeverAsksTheFirstRouter) {
  BuildChain(4);
  const auto chain = host.icmp.answer;
  host.icmp.answer = [&](const test::FakeIcmp::Echo& echo) {
    return echo.ttl == 3 ? std::nullopt : chain(echo);
  };
  host.names.names[Packed(10, 0, 0, 2)] = "two.test";
  int passes = 0;
  std::function<void()> pass = [&] {
    ++passes;
    host.loop.Post(pass);
  };
  host.loop.Post(pass);
  std::string target = "target.test";
  EXPECT_EQ(tools.TraceRoute(target),
            "Hop #0  10.0.0.2 - two.test\r\n"
            "Hop #1  10.0.0.4 - Lookup failed\r\n"
            "Hop #2  192.0.2.7 - target.test");
  EXPECT_EQ(target, "192.0.2.7");
  EXPECT_EQ(host.icmp.sent.front().ttl, 2);
  EXPECT_EQ(passes, 3) << "the message loop runs for the silent router too, not at the target";
  EXPECT_EQ(host.icmp.openHandles, 1) << "a trace leaves its handle open";

  BuildChain(1);
  EXPECT_EQ(tools.TraceRoute(target), "Hop #0  192.0.2.7 - target.test");
}

TEST_F(Tools, TraceEndsAfterThirty) {
  std::string target = "192.0.2.7";
  BuildChain(40);
  auto route = tools.TraceRoute(target);
  EXPECT_TRUE(route.ends_with("\r\nHop #28  10.0.0.30 - Lookup failed\r\nTrace Route to Long."));
  host.icmp.answer = nullptr;
  EXPECT_EQ(tools.TraceRoute(target), "\r\nTrace Route to Long.");

  // The target itself at the last Ttl is an arrival.
  BuildChain(29);
  EXPECT_TRUE(tools.TraceRoute(target).ends_with("Hop #28  192.0.2.7 - target.test"));
  host.icmp.answer = [](const auto&) { return std::optional(IcmpEchoReply{0, 11050, 0}); };
  EXPECT_EQ(tools.TraceRoute(target), "\r\nTrace Route to Long.") << "this host is no hop";

  host.icmp.available = false;
  EXPECT_EQ(tools.TraceRoute(target), "");
}

}  // namespace
}  // namespace tallowin::nettools
