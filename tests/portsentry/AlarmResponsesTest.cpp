#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "portsentry/AlarmResponses.h"
#include "portsentry/ContolPanelSounds.h"
#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using namespace std::chrono_literals;
using platform::RegistryValue;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kBlink = 1200ms;
constexpr const char* kEvent =
    ".default\\appevents\\schemes\\apps\\tallowin\\hacker detected\\.current";

struct AlarmResponsesTest : test::ProgramTest {
  std::vector<std::string> pressed;  ///< what was done, in order

  void SetUp() override {
    host.ImportPresets(1, 0);
    host.SetSlot(1, 1111);
    host.registry.keys[kEvent] = {{"", RegistryValue::Text("/x/siren.wav")}};
    host.dialUp.links = {{.hRasConn = "/1", .szEntryName = ""}};
    Start();
    Main().Toolbar1.OnButtonClick = [this](const auto& button) {
      pressed.push_back(button.Key + (host.sound.played.empty() ? "" : " after siren") +
                        (host.loop.Ticks(kBlink) ? " and warning" : "") +
                        (host.dialUp.hungUp.empty() ? "" : " and hang-up") +
                        (host.shutdown.asked.empty() ? "" : " and shutdown"));
    };
  }
  void SetAll(std::uint32_t value) {
    for (const char* name : {"Sound Siren", "Visual Warning", "Whois Hacker", "Trace Route Hacker",
                             "ShutDown", "Hang Up Modem"}) {
      host.Port(1, name) = RegistryValue::Dword(value);
    }
  }
  void ExpectSilence() {
    EXPECT_THAT(host.sound.played, IsEmpty());
    EXPECT_FALSE(host.loop.Ticks(kBlink));
    EXPECT_THAT(host.dialUp.hungUp, IsEmpty());
    EXPECT_THAT(host.shutdown.asked, IsEmpty());
  }
};

TEST_F(AlarmResponsesTest, LookupsAlwaysAndTheRestOnlyAtExactlyOne) {
  for (const std::uint32_t value : {0U, 2U, 0xFFFFFFFFU}) {
    pressed.clear();
    SetAll(value);
    program->Call(1111);
    EXPECT_THAT(pressed, ElementsAre("dnslookup", "ping")) << value;
    ExpectSilence();
  }
}

TEST_F(AlarmResponsesTest, EverythingInItsOrderAndReadAtTheMomentOfTheCall) {
  SetAll(1);
  program->Call(1111);
  EXPECT_THAT(pressed, ElementsAre("dnslookup", "ping", "whois after siren and warning",
                                   "traceroute after siren and warning"));
  EXPECT_THAT(host.sound.played, ElementsAre("/x/siren.wav"));
  EXPECT_THAT(host.dialUp.hungUp, ElementsAre("/1"));
  EXPECT_THAT(host.shutdown.asked, ElementsAre(5));
  EXPECT_EQ(program->Log().back(), "----Connected Attempt Ended----");
}

TEST_F(AlarmResponsesTest, AnErrorSkipsTheRestAndTheAttemptStillEnds) {
  SetAll(1);
  host.dialUp.supported = false;
  program->Call(1111);
  EXPECT_THAT(host.sound.played, ElementsAre("/x/siren.wav"));
  EXPECT_THAT(host.shutdown.asked, IsEmpty()) << "comes behind the hang-up, which failed";
  EXPECT_EQ(program->Log().back(), "----Connected Attempt Ended----");

  host.sound.played.clear();
  host.Port(1, "Sound Siren") = RegistryValue::Text("loud");
  program->Call(1111);
  EXPECT_THAT(host.sound.played, IsEmpty());
  EXPECT_EQ(program->Log().back(), "----Connected Attempt Ended----");
}

struct BlinkingTest : AlarmResponsesTest {
  forms::Form& Window() { return program->tallowin.BigMSG(); }
  void Alarm() {
    host.Port(1, "Visual Warning") = RegistryValue::Dword(1);
    program->Call(1111);
  }
  std::vector<bool> Shown(int ticks) {
    std::vector<bool> shown;
    for (int i = 0; i < ticks; ++i) {
      host.loop.Tick(kBlink);
      shown.push_back(Window().Visible());
    }
    return shown;
  }
};

TEST_F(BlinkingTest, ThreeShowingsAndThenForGood) {
  EXPECT_FALSE(Window().TopMost());
  Alarm();
  EXPECT_FALSE(Window().Visible());
  EXPECT_EQ(Window().Find("Label1")->Caption(), "CONNECTION ATTEMPTED!!!");
  EXPECT_THAT(Shown(1), ElementsAre(true));
  EXPECT_TRUE(Window().TopMost());
  EXPECT_EQ(Window().Find("Label1")->Caption(), "WARNING\r\nConnection Attempted");
  Window().PressCloseBox();
  EXPECT_THAT(Shown(5), ElementsAre(false, true, false, true, false));
  EXPECT_FALSE(host.loop.Ticks(kBlink));
  EXPECT_FALSE(program->tallowin.MainForm().Visible()) << "is none of its business";

  Alarm();
  EXPECT_THAT(Shown(6), ElementsAre(true, false, true, false, true, false)) << "a second series";
}

const std::string kApps = "appevents\\schemes\\apps\\tallowin\\";
const std::string kHacker = kApps + "hacker detected\\.current";
const std::string kTrojan = kApps + "trojan detected\\.current";
constexpr const char* kScheme = "appevents\\schemes\\tallowin";

test::FakeRegistry::Values DefaultValue(const std::string& text) {
  return {{"", RegistryValue::Text(text)}};
}

TEST(ContolPanelSounds, TheFirstStartMakesTheEventsAndTheSecondLeavesThem) {
  test::FakeHost host;
  test::Program(host).Start();
  EXPECT_EQ(host.registry.keys[kHacker], DefaultValue(host.folder.Path() + "/hacker.wav"));
  EXPECT_EQ(host.registry.keys[kTrojan], DefaultValue(host.folder.Path() + "/trojan.wav"));
  EXPECT_EQ(host.registry.keys[kScheme], DefaultValue("Tallowin"));

  host.registry.keys[kHacker] = DefaultValue("/the/users/own.wav");
  host.registry.keys[kTrojan].clear();
  host.registry.keys[kScheme] = DefaultValue("Another");
  test::Program(host).Start();
  EXPECT_EQ(host.registry.keys[kHacker], DefaultValue("/the/users/own.wav"));
  EXPECT_THAT(host.registry.keys[kTrojan], IsEmpty()) << "the key is what counts";
  EXPECT_EQ(host.registry.keys[kScheme], DefaultValue("Tallowin"));
}

struct PlaySoundEventTest : testing::Test {
  test::FakeHost host;
  core::TallowinModule module{host.paths, host.system};
  ContolPanelSounds sounds{host.registry, host.sound, module};

  std::vector<std::string> PlayedFor(const test::FakeRegistry::Values& values) {
    host.sound.played.clear();
    host.registry.keys[".default\\" + kTrojan] = values;
    sounds.PlaySoundEvent("Tallowin", "Trojan Detected");
    return host.sound.played;
  }
};

TEST_F(PlaySoundEventTest, WhatTheBufferCannotHoldOrIsNoTextStaysSilentOrCut) {
  EXPECT_THAT(PlayedFor({}), IsEmpty());
  EXPECT_THAT(PlayedFor(DefaultValue("")), IsEmpty());
  EXPECT_THAT(PlayedFor({{"", RegistryValue::Dword(7)}}), IsEmpty());
  EXPECT_THAT(PlayedFor(DefaultValue(std::string(509, 'a'))), ElementsAre(std::string(255, 'a')));
  EXPECT_THAT(PlayedFor(DefaultValue(std::string(510, 'a'))), IsEmpty());
}

}  // namespace
}  // namespace tallowin::portsentry
