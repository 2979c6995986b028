#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nettools/Icmp.h"
#include "nettools/IpTools.h"
#include "support/FakeHost.h"
#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using platform::IcmpEchoReply;
using test::Packed;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(Tools, PingSendsOneEchoAndGivesANumberOrASentence) {
  std::string target = "target.test";
  host.icmp.answer = [](const auto& echo) {
    return std::optional(IcmpEchoReply{echo.destination, 0, 41});
  };
  EXPECT_EQ(tools.PingHost(target), "41");
  EXPECT_EQ(target, "192.0.2.7") << "the caller's name becomes its address";
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

struct IpToolsTest : test::ProgramTest {
  IpToolsTest() {
    host.icmp.answer = [](const auto& echo) {
      return std::optional(IcmpEchoReply{echo.destination, 0, 41});
    };
  }
};

TEST_F(IpToolsTest, WithoutATargetNothingHappens) {
  Up(0, 1);
  for (const char* target : {"IP Addresses...", ""}) {
    Main().LoggedIPs.SetText(target);
    for (std::size_t button = 1; button <= 4; ++button) {
      Main().Toolbar1.Click(Main().Toolbar1.Buttons(button));
      EXPECT_TRUE(Main().Toolbar1.Enabled());
    }
  }
  EXPECT_THAT(NewLines(), IsEmpty());
  EXPECT_TRUE(Main().LoggedIPs.Enabled());
  EXPECT_THROW((void)Main().Toolbar1.Buttons(5), platform::RunTimeError);
}

TEST_F(IpToolsTest, ACallerInTheMiddleOfAToolBecomesTheTargetOfItsNextStep) {
  Up();
  Main().LoggedIPs.SetText("192.0.2.7");
  const auto follow = Main().Status.OnChange;
  bool called = false;
  Main().Status.OnChange = [&] {
    follow();
    if (std::exchange(called, true)) return;
    EXPECT_FALSE(Main().Toolbar1.Enabled());
    Main().LoggedIPs.SetText("192.0.2.8");
    Main().Toolbar1.Click("dnslookup");
    EXPECT_TRUE(Main().Toolbar1.Enabled()) << "the inner one enables what the outer one needs";
  };
  Main().Toolbar1.Click("ping");
  EXPECT_THAT(NewLines(), ElementsAre("", "Ping Started", "", "Resolve DNS Started",
                                      "192.0.2.8 Resolves to Lookup failed", "Resolve DNS Complete",
                                      "Pinging Host: 192.0.2.8 ...",
                                      "Ping Complete... Milliseconds: 41", "Ping Completed"));
  EXPECT_EQ(host.icmp.sent.back().destination, Packed(192, 0, 2, 8));
}

TEST_F(IpToolsTest, AnErrorIsToldInVerboseModeOnlyAndEnablesTheBar) {
  for (const std::uint32_t verbose : {0U, 1U}) {
    Up(0, verbose);
    Main().LoggedIPs.SetText("192.0.2.7");
    host.icmp.answer = [](const auto&) -> std::optional<IcmpEchoReply> {
      throw platform::RunTimeError(10024, "Too many open files");
    };
    Main().Toolbar1.Click("ping");
    EXPECT_EQ(program->Log().back(),
              verbose == 1 ? "Error 10024 occured" : "Pinging Host: 192.0.2.7 ...");
    EXPECT_TRUE(Main().Toolbar1.Enabled());
  }
}

}  // namespace
}  // namespace tallowin::nettools
