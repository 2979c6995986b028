#include "analysis/InfectionCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <random>

#include "analysis/CRC32.h"
#include "analysis/SuspiciousWords.h"
#include "analysis/TrojanDetect.h"
#include "core/TestPrograms.h"
#include "support/ErrorOf.h"
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

TEST(CRC32, PublishedCheckValues) {
  EXPECT_EQ(Crc32Text(Crc32OfBytes("123456789")), "CBF43926");
  EXPECT_EQ(Crc32Text(Crc32OfBytes("The quick brown fox jumps over the lazy dog")), "414FA339");
  EXPECT_EQ(Crc32Text(Crc32OfBytes(std::string(32, '\0'))), "190A55AD");
  EXPECT_EQ(Crc32OfBytes("123456789"), std::bit_cast<std::int32_t>(0xCBF43926U));
  EXPECT_EQ(Crc32OfBytes(""), 0);
  EXPECT_EQ(Crc32Text(0), "0");
  EXPECT_EQ(Crc32Text(0x0ABCDE01), "ABCDE01");
}

/// The definition, bit by bit.
std::uint32_t PlainCrc(std::string_view bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) * 0xEDB88320U);
  }
  return ~crc;
}

TEST(CRC32, EqualsItsDefinitionAtEveryLengthAndAlignment) {
  std::mt19937 random(7);
  std::string bytes(3000, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  const std::string_view all = bytes;
  for (std::size_t length = 1; length < all.size(); length += length < 600 ? 1 : 97) {
    const std::string_view part = all.substr(length % 17, length);
    ASSERT_EQ(std::bit_cast<std::uint32_t>(Crc32OfBytes(part)), PlainCrc(part)) << length;
  }
}

struct TrojanDetectTest : testing::Test {
  test::FakeHost host;
  core::MiscRoutines misc{host.paths, host.loop};
  ReadFile readFile{misc, host.files};
  TrojanDetect detect{misc, readFile, host.loop};

  std::string Rating(std::string text) { return detect.RateSuspicion(text); }
  std::string File(const std::string& text) {
    const std::string path = host.folder.Path() + "/file";
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
};

TEST_F(TrojanDetectTest, TheWorstWordDecidesWhereverItStands) {
  for (const SuspiciousWord& entry : kSuspiciousWords) {
    const std::string expected = entry.level == 3 ? "High" : "Medium";
    const std::string word(entry.word);
    EXPECT_EQ(Rating(word), expected) << word;
    EXPECT_EQ(Rating("x" + word), expected) << word;
    EXPECT_EQ(Rating(word + "x"), expected) << word;
    EXPECT_EQ(Rating(word.substr(1)), "Safe") << word;
    EXPECT_EQ(Rating(word.substr(0, word.size() - 1)), "Safe") << word;
  }
  EXPECT_EQ(Rating("virus socket"), "High");
  EXPECT_EQ(Rating("socket virus"), "High");
  EXPECT_EQ(Rating("export report ports"), "Safe");
  EXPECT_EQ(Rating("a port"), "Safe");
  EXPECT_EQ(Rating(""), "Safe");
  EXPECT_EQ(Rating(std::string("t\0r\0o\0j\0a\0n\0", 12)), "Safe");
}

TEST_F(TrojanDetectTest, TheCallersTextIsLoweredAndEventsRunOnce) {
  int events = 0;
  host.loop.pending.emplace_back([&] { ++events; });
  std::string text = "A TROJAN [\xC4]";
  EXPECT_EQ(detect.RateSuspicion(text), "High");
  EXPECT_EQ(text, "a trojan [\xC4]");
  EXPECT_EQ(events, 1);
}

TEST_F(TrojanDetectTest, WordsAreFoundAcrossTheSearchsOwnBorders) {
  // Longer than several chunks of the search, with a word at each place around their borders.
  const std::string blank(40000, '.');
  for (std::size_t place = 0; place + 5 <= blank.size(); place += place % 8192 < 8160 ? 255U : 1U) {
    std::string text = blank;
    text.replace(place, 5, "ViRuS");
    ASSERT_EQ(Rating(std::move(text)), "High") << place;
  }
}

TEST_F(TrojanDetectTest, AnEmptyFileIsAnErrorAndAMissingOneIsToldOf) {
  EXPECT_EQ(detect.GetFileSuspicion(File("a client of UDP")), "Medium");
  EXPECT_EQ(detect.ScanFileForVirii(File("virus")), "No Virii Found");
  EXPECT_EQ(detect.GetFileSuspicion("/no/such"), "File Not Found");
  EXPECT_EQ(readFile.ReadFileAsText("/no/such"), "");
  EXPECT_EQ(test::ErrorOf([&] { (void)detect.GetFileSuspicion(File("")); }), 9);
}

TEST_F(TrojanDetectTest, AgreesWithAPlainSearch) {
  // Letters of the words only, so that many of their beginnings occur.
  constexpr std::string_view kLetters = "tcpudbinhak 3";
  std::mt19937 random(11);
  for (int round = 0; round < 3000; ++round) {
    std::string text(random() % 300, '\0');
    for (char& c : text) c = kLetters[random() % kLetters.size()];
    int expected = 1;
    for (const SuspiciousWord& entry : kSuspiciousWords) {
      if (text.find(entry.word) != std::string::npos) expected = std::max(expected, entry.level);
    }
    ASSERT_EQ(LowerAndRate(text), expected) << text;
  }
}

}  // namespace
}  // namespace tallowin::analysis
