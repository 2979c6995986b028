#include "trojansentry/HuntOffendingProcess.h"

#include <gtest/gtest.h>

#include "support/FakeHost.h"

namespace tallowin::trojansentry {
namespace {

using forms::Answer;
using forms::MessageBoxStyle;
using Ids = std::vector<std::uint32_t>;

struct HuntTest : testing::Test {
  test::FakeHost host;
  test::ScriptedQuestions questions;
  core::MiscRoutines misc{host.paths, host.loop};
  core::TallowinModule module{host.paths, host.system};
  analysis::ReadFile readFile{misc, host.files};
  analysis::TrojanDetect detect{misc, readFile, host.loop};
  analysis::ModList9x modList9x{host.processes, module, misc};
  OffendingProcessHunt hunt{{.misc = misc,
                             .readFile = readFile,
                             .trojanDetect = detect,
                             .modList9x = modList9x,
                             .processes = host.processes,
                             .files = host.files,
                             .questions = questions}};
  std::string offender = File("offender", "bad");

  std::string File(const std::string& name, const std::string& text) {
    std::string path = host.folder.Path() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  void Run(std::uint32_t id, const std::string& path) {
    host.processes.running.push_back({.processId = id, .exeFile = path + '\0'});
  }
  [[nodiscard]] std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const auto& asked : questions.asked) titles.push_back(asked.title);
    return titles;
  }
};

TEST_F(HuntTest, CopiesAreKnownByTheirContentsAndEachIsAskedAboutByItself) {
  Run(0, "[kernel]");
  Run(11, File("one", "bad"));
  Run(12, File("other", "good"));
  Run(13, File("two", "bad"));
  Run(14, "/no/such/file");
  Run(15, File("three", "bad"));
  questions.answers = {Answer::Yes, Answer::Yes, Answer::No, Answer::Yes, Answer::No};
  std::string file = offender;
  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(file, "");
  EXPECT_EQ(host.processes.terminated, (Ids{11, 15}));
  EXPECT_EQ(host.files.deleted, (std::vector{host.folder.Path() + "/one"}));
  EXPECT_EQ(Titles(), (std::vector<std::string>{"Kill Process?", "Delete File?", "Kill Process?",
                                                "Kill Process?", "Delete File?"}));
  EXPECT_EQ(questions.asked[0].text,
            "A program running has been identified as the same program which added itself to your "
            "ini files/auto startup. Would you like to kill this process?");
  EXPECT_EQ(questions.asked[1].text, "Would you like to delete the file?");
  EXPECT_EQ(questions.asked[0].style, MessageBoxStyle::YesNoQuestion);
  EXPECT_EQ(questions.asked[1].style, MessageBoxStyle::YesNoQuestion);
}

TEST_F(HuntTest, WhatIsNoPathOfAFileMatchesNothing) {
  // A process may be called like a pattern, or like a file that lies below the current folder.
  Run(11, "*");
  Run(12, std::filesystem::relative(File("copy", "bad")));
  Run(13, host.folder.Path() + "/*");
  host.paths.patterns = {"*", host.folder.Path() + "/*"};
  std::string file = offender;
  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(file, "");
  EXPECT_TRUE(questions.asked.empty());
}

TEST_F(HuntTest, AMissingFileDoesNotEqualOneWhoseChecksumIs0) {
  const std::string zero = File("zero", "\x9D\x0A\xD9\x6D");
  Run(11, "/no/such/file");
  Run(12, "Error");
  Run(13, zero);
  questions.answers = {Answer::Yes, Answer::No};
  std::string file = zero;
  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(host.processes.terminated, Ids{13});
}

TEST_F(HuntTest, WithoutASnapshotTheFileStaysForTheNextHunt) {
  host.processes.snapshots = false;
  std::string file = offender;
  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(file, offender);
  EXPECT_TRUE(questions.asked.empty());
}

TEST_F(HuntTest, AnErrorEndsTheHuntAndTheNextOneStartsAnew) {
  const std::string one = File("one", "bad");
  Run(11, one);
  Run(12, File("two", "bad"));
  host.files.undeletable.insert(one);
  questions.answers = {Answer::Yes, Answer::Yes, Answer::Ok, Answer::No};
  std::string file = offender;
  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(file, offender);
  EXPECT_EQ(questions.asked.back().title, "Could not remove file");
  EXPECT_EQ(questions.asked.back().text,
            "Cannot delete program - It is suggested that you disconnect from the internet and run "
            "a virus scanner");
  EXPECT_EQ(questions.asked.back().style, MessageBoxStyle::Information);
  EXPECT_EQ(questions.asked.size(), 3U);

  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(file, "");
  EXPECT_EQ(questions.asked.size(), 4U);
  EXPECT_EQ(host.processes.terminated, Ids{11});
}

TEST_F(HuntTest, WhatCannotBeReadIsToldAtEveryHunt) {
  host.files.unreadable.insert(offender);
  std::string file = offender;
  for (std::size_t hunts = 1; hunts <= 2; ++hunts) {
    hunt.HuntOffendingProcess(file);
    EXPECT_EQ(file, offender);
    ASSERT_EQ(questions.asked.size(), hunts);
    EXPECT_EQ(questions.asked.back().title, "Error Removing (Possible) Virus");
    EXPECT_EQ(questions.asked.back().text, "Subscript out of range");
    EXPECT_EQ(questions.asked.back().style, MessageBoxStyle::Stop);
  }
  // A process's file counts like the offending one.
  host.files.unreadable = {File("one", "other")};
  Run(11, host.folder.Path() + "/one");
  hunt.HuntOffendingProcess(file);
  EXPECT_EQ(questions.asked.size(), 3U);
}

TEST_F(HuntTest, TheEndOfTheProgramIsNoError) {
  Run(11, offender);
  questions.whileAsking = [&] { host.loop.End(0); };
  std::string file = offender;
  EXPECT_THROW(hunt.HuntOffendingProcess(file), platform::ProgramEnded);
  EXPECT_EQ(questions.asked.size(), 1U);
}

}  // namespace
}  // namespace tallowin::trojansentry
