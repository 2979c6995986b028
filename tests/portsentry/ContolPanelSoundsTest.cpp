#include "portsentry/ContolPanelSounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Program.h"

namespace tallowin::portsentry {
namespace {

using platform::RegistryValue;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(PlaySoundEventTest, ReadsTheDefaultProfileThoughTheUsersIsWritten) {
  sounds.AddSoundEvent("Tallowin", "Trojan Detected", "/x/trojan.wav");
  EXPECT_TRUE(sounds.SoundEventExists("Tallowin", "Trojan Detected"));
  sounds.PlaySoundEvent("Tallowin", "Trojan Detected");
  EXPECT_THAT(host.sound.played, IsEmpty());
  EXPECT_THAT(PlayedFor(DefaultValue("/y/trojan.wav")), ElementsAre("/y/trojan.wav"));
}

TEST_F(PlaySoundEventTest, WhatTheBufferCannotHoldOrIsNoTextStaysSilentOrCut) {
  EXPECT_THAT(PlayedFor({}), IsEmpty());
  EXPECT_THAT(PlayedFor(DefaultValue("")), IsEmpty());
  EXPECT_THAT(PlayedFor({{"", RegistryValue::Dword(7)}}), IsEmpty());
  EXPECT_THAT(PlayedFor(DefaultValue(std::string(509, 'a'))), ElementsAre(std::string(255, 'a')));
  EXPECT_THAT(PlayedFor(DefaultValue(std::string(510, 'a'))), IsEmpty());
}

}  // namespace
}  // namespace tallowin::portsentry
