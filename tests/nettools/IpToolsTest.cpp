#include "nettools/IpTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::nettools {
namespace {

using platform::IcmpEchoReply;
using test::Packed;
using testing::ElementsAre;
using testing::IsEmpty;

struct IpToolsTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;
  std::size_t start = 0;

  void Up(std::uint32_t verbose) {
    host.ImportPresets(0, verbose);
    host.names.addresses["target.test"] = Packed(192, 0, 2, 7);
    host.names.names[Packed(192, 0, 2, 7)] = "target.test";
    host.icmp.answer = [](const auto& echo) {
      return std::optional(IcmpEchoReply{echo.destination, 0, 41});
    };
    program = std::make_unique<test::Program>(host);
    program->Start();
    start = program->Log().size();
  }
  core::MainForm& Form() { return program->tallowin.MainForm(); }
};

TEST_F(IpToolsTest, WithoutATargetNothingHappens) {
  Up(1);
  for (const char* target : {"IP Addresses...", ""}) {
    Form().LoggedIPs.SetText(target);
    for (std::size_t button = 1; button <= 4; ++button) {
      Form().Toolbar1.Click(Form().Toolbar1.Buttons(button));
      EXPECT_TRUE(Form().Toolbar1.Enabled());
    }
  }
  EXPECT_THAT(program->Log(start), IsEmpty());
  EXPECT_TRUE(Form().LoggedIPs.Enabled());
  EXPECT_THROW((void)Form().Toolbar1.Buttons(5), platform::RunTimeError);
}

TEST_F(IpToolsTest, EachToolLogsItsLinesAndLeavesTheNameInTheBox) {
  Up(0);
  Form().LoggedIPs.SetText("target.test");
  Form().Toolbar1.Click("dnslookup");
  Form().Toolbar1.Click("ping");
  Form().Toolbar1.Click("traceroute");
  EXPECT_THAT(
      program->Log(start),
      ElementsAre("", "Resolve DNS Started", "target.test Resolves to 192.0.2.7",
                  "Resolve DNS Complete", "", "Ping Started", "Pinging Host: target.test ...",
                  "Ping Complete... Milliseconds: 41", "Ping Completed", "", "Traceroute Started",
                  "Tracing route to target.test", "Hop #0  192.0.2.7 - target.test",
                  "Traceroute Complete"));
  EXPECT_EQ(Form().LoggedIPs.Text(), "target.test");
}

TEST_F(IpToolsTest, ACallerInTheMiddleOfAToolBecomesTheTargetOfItsNextStep) {
  Up(0);
  Form().LoggedIPs.SetText("192.0.2.7");
  const auto follow = Form().Status.OnChange;
  bool called = false;
  Form().Status.OnChange = [&] {
    follow();
    if (std::exchange(called, true)) return;
    EXPECT_FALSE(Form().Toolbar1.Enabled());
    Form().LoggedIPs.SetText("192.0.2.8");
    Form().Toolbar1.Click("dnslookup");
    EXPECT_TRUE(Form().Toolbar1.Enabled()) << "the inner one enables what the outer one needs";
  };
  Form().Toolbar1.Click("ping");
  EXPECT_THAT(program->Log(start),
              ElementsAre("", "Ping Started", "", "Resolve DNS Started",
                          "192.0.2.8 Resolves to Lookup failed", "Resolve DNS Complete",
                          "Pinging Host: 192.0.2.8 ...", "Ping Complete... Milliseconds: 41",
                          "Ping Completed"));
  EXPECT_EQ(host.icmp.sent.back().destination, Packed(192, 0, 2, 8));
}

TEST_F(IpToolsTest, AnErrorIsToldInVerboseModeOnlyAndEnablesTheBar) {
  for (const std::uint32_t verbose : {0U, 1U}) {
    Up(verbose);
    Form().LoggedIPs.SetText("192.0.2.7");
    host.icmp.answer = [](const auto&) -> std::optional<IcmpEchoReply> {
      throw platform::RunTimeError(10024, "Too many open files");
    };
    Form().Toolbar1.Click("ping");
    EXPECT_EQ(program->Log().back(),
              verbose == 1 ? "Error 10024 occured" : "Pinging Host: 192.0.2.7 ...");
    EXPECT_TRUE(Form().Toolbar1.Enabled());
  }
}

}  // namespace
}  // namespace tallowin::nettools
