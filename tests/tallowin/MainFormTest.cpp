#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/Program.h"

namespace tallowin {
namespace {

using MainFormTest = test::ProgramTest;
using forms::WindowState;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(MainFormTest, MinimisingAndTheCloseBoxHideTheWindowAndTheGuardGoesOn) {
  Up();
  Main().SetState(forms::WindowState::Normal);
  Main().Show();
  Main().PressCloseBox();
  EXPECT_FALSE(Main().Visible());
  EXPECT_EQ(Main().State(), forms::WindowState::Minimised);
  EXPECT_FALSE(host.loop.Ended());
}

TEST_F(MainFormTest, AnErrorThatNobodyHandlesEndsTheProgramWithTheLogWrittenFirst) {
  Up();
  const auto file = host.folder.Path() + "/Logs/Log 9_16_2000 9_41_07 PM.log";
  program->questions.whileAsking = [&] {
    EXPECT_TRUE(std::filesystem::exists(file));
    // Events run on behind the box; a second failure changes nothing.
    host.loop.Deliver([] { throw platform::RunTimeError(6, "Overflow"); });
    EXPECT_FALSE(host.loop.Ended()) << "the first is still to be read";
    Main().Status.AppendText("a call behind the box");
  };
  host.registry.keys.clear();
  host.loop.Deliver([&] { program->tallowin.Settings().LoadSettings(); });
  ASSERT_EQ(program->questions.asked.size(), 1U);
  EXPECT_EQ(program->questions.asked[0].text, "Run-time error '13':\r\n\r\nType mismatch");
  EXPECT_EQ(program->questions.asked[0].style, forms::MessageBoxStyle::Stop);
  EXPECT_EQ(host.loop.ExitStatus(), 1);
  EXPECT_THAT(test::ReadFile(file), HasSubstr("a call behind the box"));
}

struct TrayIconTest : test::ProgramTest {
  void SetUp() override { Up(); }
  forms::TaskBar& TaskBar() { return program->tallowin.Forms().TaskBar(); }
  void Mouse(std::uint32_t message) {
    host.loop.Deliver([&] { TaskBar().Mouse(message); });
  }
};

TEST_F(TrayIconTest, ADoubleClickAloneRestores) {
  Main().SetTopMost(true);
  for (std::uint32_t message = 512; message < 525; ++message) {
    if (message != 515) Mouse(message);
  }
  EXPECT_FALSE(Main().Visible());
  Mouse(515);
  EXPECT_TRUE(Main().Visible());
  EXPECT_EQ(Main().State(), WindowState::Normal);
  EXPECT_FALSE(Main().TopMost()) << "whatever the setting says";

  Main().SetState(WindowState::Minimised);
  for (forms::Form* box : {static_cast<forms::Form*>(&program->tallowin.Options()),
                           static_cast<forms::Form*>(&program->tallowin.FrmAbout())}) {
    box->Show();
    Mouse(515);
    EXPECT_FALSE(Main().Visible()) << "behind " << box->Name();
    box->Hide();
  }
}

TEST_F(TrayIconTest, TheMenuComesUpOnceAndKeepsOtherMessagesOut) {
  program->questions.whileAsking = [&] {
    Mouse(517);
    Mouse(515);
    host.loop.Deliver([] { throw platform::RunTimeError(5, "of an item's own"); });
  };
  host.loop.OnUnhandledError([](const platform::RunTimeError&) {});
  Mouse(517);
  EXPECT_THAT(program->questions.poppedUp, ElementsAre(&Main().protmnu));
  EXPECT_FALSE(Main().Visible());
  program->questions.whileAsking = [] { throw platform::RunTimeError(5, "passed over"); };
  Mouse(517);
  Mouse(515);
  EXPECT_TRUE(Main().Visible()) << "nothing keeps messages out any more";
}

TEST_F(TrayIconTest, AMenuThatThePanelShowsKeepsThemOutAsWell) {
  const auto choose = [&] {
    host.loop.Deliver([&] { TaskBar().ChooseFromIconMenu(Main().exittwmnu); });
  };
  program->questions.whileAsking = [&] {
    choose();
    Mouse(515);
  };
  for (const std::size_t asked : {1U, 2U}) {
    program->questions.answers = {forms::Answer::No};
    choose();
    EXPECT_EQ(program->questions.asked.size(), asked);
    EXPECT_FALSE(Main().Visible());
  }
}

struct OptionsDialogTest : test::ProgramTest {
  void StartWithSlots(bool portSentry, bool verbose = false) {
    host.ImportPresets(portSentry ? 1 : 0, verbose ? 1 : 0);
    host.SetSlot(1, 21, core::action::kSend);
    host.SetSlot(2, 23, core::action::kChat);
    Start();
    Options().Show();
  }
  core::PortSetting& Slot(int slot) { return program->tallowin.Settings().PortSettings(slot); }
  void Do(const std::function<void()>& action) { host.loop.Deliver(action); }
  void Type(const std::string& port) {
    Do([&] { Options().PortNumTxt.SetText(port); });
  }
};

TEST_F(OptionsDialogTest, TheFrameIsNamedByTheLastSlotThatAButtonLedTo) {
  StartWithSlots(false);
  for (int press = 0; press < 20; ++press) Options().Command4[1].Click();
  EXPECT_EQ(Options().Frame1.Caption(), "Port Setting 15");
  Options().Hide();
  Options().Show();
  EXPECT_EQ(Options().PortNumTxt.Text(), "21");
  EXPECT_EQ(Options().Frame1.Caption(), "Port Setting 15");
}

TEST_F(OptionsDialogTest, WhatIsTypedAsAPort) {
  StartWithSlots(false);
  struct Case {
    const char *typed, *shown;
    int stored, beeps;
  };
  // Letters alone leave an empty field, which is no number either.
  for (const auto& [typed, shown, stored, beeps] :
       {Case{"80", "80", 80, 0}, Case{"8a0b1", "801", 801, 1}, Case{"", "0", 0, 1},
        Case{"x", "0", 0, 2}, Case{"-5", "-5", -5, 0}, Case{"2.5", "2.5", 2, 0},
        Case{"1e3", "1e3", 1000, 0}, Case{"&H1F", "&H1F", 31, 0}, Case{" 7 ", " 7 ", 7, 0},
        Case{"1e999", "1999", 1999, 1}, Case{"32767", "32767", 32767, 0}}) {
    host.sound.beeps = 0;
    Type(typed);
    EXPECT_EQ(Options().PortNumTxt.Text(), shown) << typed;
    EXPECT_EQ(Slot(1).SocketNumber, stored) << typed;
    EXPECT_EQ(host.sound.beeps, beeps) << typed;
    EXPECT_EQ(Options().Image7.Picture(), stored == 0 ? "DontProtect" : "SendMessage") << typed;
  }
  Type("32768");
  EXPECT_EQ(program->questions.asked.back().text, "Run-time error '6':\r\n\r\nOverflow");
  EXPECT_EQ(host.loop.ExitStatus(), 1);
}

TEST_F(OptionsDialogTest, OKWithPortSentryOffOpensNothing) {
  StartWithSlots(false);
  Type("24");
  Options().OnTopChk.SetValue(1);
  EXPECT_FALSE(Main().TopMost());
  Do([&] { Options().Command1.Click(); });
  EXPECT_THAT(NewLines(), IsEmpty());
  EXPECT_EQ(host.Port(1, "Socket Number").Number(), 24);
  EXPECT_EQ(host.sockets.ListeningOn(24), nullptr);
  EXPECT_TRUE(Main().TopMost());
}

TEST_F(OptionsDialogTest, CancelTakesBackWhatWasSwitchedAndTyped) {
  StartWithSlots(true, true);
  Type("24");
  Options().IdentDTxt.SetText("me");
  Do([&] { Options().ActiveMonChk.SetValue(1); });
  EXPECT_THAT(NewLines(), ElementsAre("Trojan Sentry Enabled", "Trojan Sentry Deactivated",
                                      "Trojan Sentry Activated"));
  Do([&] { Options().Command2.Click(); });
  const auto lines = NewLines();
  EXPECT_EQ(lines[0], "Trojan Sentry Disabled");
  EXPECT_EQ(lines[1], "Trojan Sentry Deactivated");
  EXPECT_EQ(lines[2], "Port Sentry Disactivated");
  EXPECT_EQ(lines.back(), "Port Sentry Activated");
  EXPECT_FALSE(Options().Visible());
  EXPECT_FALSE(Main().ActiveMonMnu.Checked());
  EXPECT_EQ(Options().IdentDTxt.Text(), "Anonymous");
  EXPECT_EQ(Slot(1).SocketNumber, 21);
  EXPECT_NE(host.sockets.ListeningOn(21), nullptr);
}

TEST_F(OptionsDialogTest, MissingSettingsEndTheProgram) {
  for (auto button : {&core::Options::Command1, &core::Options::Command2}) {
    test::FakeHost bare;
    test::Program other(bare);
    other.Start();
    other.tallowin.Options().Show();
    bare.loop.Deliver([&] { (other.tallowin.Options().*button).Click(); });
    EXPECT_EQ(other.questions.asked.back().text, "Run-time error '13':\r\n\r\nType mismatch");
    EXPECT_TRUE(bare.loop.Ended());
    EXPECT_EQ(other.tallowin.Options().Visible(), button == &core::Options::Command2);
  }
}

}  // namespace
}  // namespace tallowin
