#include "analysis/InfectionCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/CRC32.h"
#include "core/TestPrograms.h"
#include "support/FakeHost.h"

namespace tallowin::analysis {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// Its waits end when the test says so; what happens during one is up to the test.
struct PatientLoop : test::FakeLoop {
  int waits = 0;
  std::function<void()> duringWait;
  void RunUntil(const std::function<bool()>&) override {
    ++waits;
    if (duringWait) duringWait();
  }
};

struct CountingPaths : test::FakePaths {
  using FakePaths::FakePaths;
  int made = 0;
  bool writable = true;
  std::string MakeTempFile(std::string_view folder, std::string_view prefix) override {
    if (!writable) throw platform::RunTimeError(75, "Path/File access error");
    std::string path =
        std::string(folder) + "/" + std::string(prefix) + std::to_string(++made) + ".tmp";
    std::ofstream(path) << "";
    return path;
  }
};

struct InfectionCheckTest : testing::Test {
  test::FakeHost host;
  PatientLoop loop;
  CountingPaths paths{host.folder.Path()};
  core::MainForm mainForm;
  core::Options options;
  core::TallowinModule module{paths, host.system};
  core::StatusLog log{mainForm, options, module, loop, host.regional};
  core::MiscRoutines misc{paths, loop};
  ReadFile readFile{misc, host.files};
  InfectionCheck check{mainForm, misc, readFile, host.files, log, loop};

  std::string Base(int pair) { return host.folder.Path() + "/TW" + std::to_string(pair) + "."; }
  void Click(int times = 1) {
    for (; times > 0; --times) check.ExeInfectChk_Click();
    while (!loop.pending.empty()) loop.DoEvents();
  }
  [[nodiscard]] const std::string& Log() const { return mainForm.Status.Text(); }
};

TEST(TestPrograms, ChecksumsAreThoseOfTheFilesWithTheirLineEnd) {
  const std::string exe = core::Base64Decode(core::kTestExe);
  const std::string com = core::Base64Decode(core::kTestCom);
  EXPECT_EQ(exe.substr(0, 2), "MZ");
  EXPECT_EQ(exe.size(), 1536U);
  EXPECT_EQ(Crc32Text(Crc32OfBytes(exe + "\r\n")), core::kTestExeChecksum);
  EXPECT_EQ(Crc32Text(Crc32OfBytes(com + "\r\n")), core::kTestComChecksum);
  EXPECT_NE(Crc32Text(Crc32OfBytes(exe)), core::kTestExeChecksum);
}

TEST_F(InfectionCheckTest, StandsInTheWaitWithBothFilesWritten) {
  loop.duringWait = [&] {
    EXPECT_THAT(Log(), EndsWith("Waiting 10 Seconds For Infection...\r\n"));
    EXPECT_EQ(fs::file_size(Base(1) + "exe"), 1538U);
    EXPECT_TRUE(test::ReadFile(Base(1) + "com").ends_with("$\r\n"));
    EXPECT_FALSE(fs::exists(Base(1) + "tmp"));
    loop.End(0);
  };
  EXPECT_THROW(Click(), platform::ProgramEnded);
  EXPECT_THAT(Log(), Not(HasSubstr("modified")));
  EXPECT_TRUE(fs::exists(Base(1) + "exe"));
}

TEST_F(InfectionCheckTest, ClicksDuringTheWaitMakeMorePairsAndNoDeeperStack) {
  loop.duringWait = [&] {
    loop.duringWait = nullptr;
    Click(3);
    std::ofstream(Base(3) + "com", std::ios::app) << "V";
  };
  Click();
  EXPECT_EQ(loop.waits, 1);
  EXPECT_EQ(paths.made, 4);
  EXPECT_THAT(Log(), HasSubstr("The EXE file was not modified\r\n"));
  EXPECT_THAT(Log(), HasSubstr("The COM file was not modified\r\n"));
  EXPECT_THAT(Log(), HasSubstr("The COM file was modified, this could be a virus\r\n"));
  EXPECT_EQ(host.files.deleted.size(), 8U);
}

TEST_F(InfectionCheckTest, TheWaitDoesNotBeginOnTopOfAnotherHandler) {
  constexpr std::chrono::milliseconds kRetry{100};
  loop.nested = true;
  Click(2);
  EXPECT_EQ(paths.made, 2);
  loop.Tick(kRetry);
  EXPECT_EQ(loop.waits, 0);
  loop.nested = false;
  loop.Tick(kRetry);
  EXPECT_EQ(loop.waits, 1);
  EXPECT_EQ(host.files.deleted.size(), 4U);
  EXPECT_FALSE(loop.Ticks(kRetry));
}

TEST_F(InfectionCheckTest, AFileThatWasDeletedCountsAsModified) {
  loop.duringWait = [&] { fs::remove(Base(1) + "exe"); };
  EXPECT_THROW(Click(), platform::RunTimeError);  // from its deletion
  EXPECT_THAT(Log(), HasSubstr("The EXE file was modified, this could be a virus\r\n"));
}

TEST_F(InfectionCheckTest, AFolderThatCannotBeWrittenIsAnError) {
  paths.writable = false;
  EXPECT_THROW(Click(), platform::RunTimeError);
  EXPECT_EQ(loop.waits, 0);
}

}  // namespace
}  // namespace tallowin::analysis
