#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/Program.h"
#include "tallowin/CommandLine.h"

namespace tallowin {
namespace {

using forms::Answer;
using forms::MessageBoxStyle;
using testing::HasSubstr;

struct MenuTest : testing::Test {
  test::FakeHost host;
  std::unique_ptr<test::Program> program;
  void SetUp() override {
    host.ImportPresets(0, 0);
    program = std::make_unique<test::Program>(host);
    program->Start();
  }
  void Click(forms::MenuItem core::MainForm::*item) {
    host.loop.Deliver([&] { (program->tallowin.MainForm().*item).Click(); });
  }
};

TEST_F(MenuTest, ExitAsksAndOnlyYesQuits) {
  program->questions.answers = {Answer::No, Answer::Yes};
  Click(&core::MainForm::exittwmnu);
  EXPECT_FALSE(host.loop.Ended());
  EXPECT_EQ(program->questions.asked[0].title, "Are you sure?");
  EXPECT_EQ(program->questions.asked[0].text,
            "Are you sure you want to quit? Your system may be vunerable to malicious users.");
  EXPECT_EQ(program->questions.asked[0].style, MessageBoxStyle::YesNoQuestion);
  Click(&core::MainForm::exittwmnu);
  EXPECT_TRUE(host.loop.Ended());
  EXPECT_EQ(host.loop.ExitStatus(), 0);
}

TEST_F(MenuTest, LogCommands) {
  const auto file = host.folder.Path() + "/Logs/Log 9_16_2000 9_41_07 PM.log";
  Click(&core::MainForm::savelog);
  EXPECT_EQ(program->questions.asked.back().text, "Log file has been saved");
  EXPECT_THAT(program->tallowin.MainForm().Status.Text(), HasSubstr("Verbose Mode Disabled"));

  program->questions.answers = {Answer::No, Answer::Yes};
  Click(&core::MainForm::Removelogs);
  EXPECT_TRUE(std::filesystem::exists(file));
  EXPECT_EQ(program->questions.asked.back().title, "Clear All Logs");
  Click(&core::MainForm::Removelogs);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(program->questions.asked.back().text, "Logs successfully removed");
  EXPECT_EQ(program->questions.asked.back().title, "Clear All Logs");

  Click(&core::MainForm::clearlog);
  EXPECT_EQ(program->tallowin.MainForm().Status.Text(), "");
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(MenuTest, MinimisingAndTheCloseBoxHideTheWindowAndTheGuardGoesOn) {
  auto& form = program->tallowin.MainForm();
  form.SetState(forms::WindowState::Normal);
  form.Show();
  form.PressCloseBox();
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(form.State(), forms::WindowState::Minimised);
  EXPECT_FALSE(host.loop.Ended());
}

TEST(CommandLine, WordsAreTakenOffTheFront) {
  std::string line = "  one two ";
  std::string word;
  GetNxtWord(line, word);
  EXPECT_EQ(word, "one");
  EXPECT_EQ(line, "two ");
  GetNxtWord(line, word);
  EXPECT_EQ(word, "two");
  GetNxtWord(line, word);
  EXPECT_EQ(word, "");
  EXPECT_EQ(line, "");
}

}  // namespace
}  // namespace tallowin
