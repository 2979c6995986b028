#include "analysis/TrojanDetect.h"

#include <gtest/gtest.h>

#include <random>

#include "analysis/SuspiciousWords.h"
#include "core/MiscRoutines.h"
#include "support/FakeHost.h"

namespace tallowin::analysis {
namespace {

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

TEST_F(TrojanDetectTest, Files) {
  const std::string path = File("a client of UDP");
  EXPECT_EQ(detect.GetFileSuspicion(path), "Medium");
  EXPECT_EQ(detect.ScanFileForVirii(File("virus")), "No Virii Found");
  EXPECT_EQ(readFile.ReadFileAsText(File(std::string("a\0b", 3))), std::string("a\0b", 3));
  EXPECT_EQ(detect.GetFileSuspicion("/no/such"), "File Not Found");
  EXPECT_EQ(detect.ScanFileForVirii("/no/such"), "File Not Found");
  EXPECT_EQ(readFile.ReadFileAsText("/no/such"), "");
  EXPECT_TRUE(readFile.ReadFileAsBytes("/no/such").Bytes().empty());
  File("");
  EXPECT_EQ(detect.ScanFileForVirii(path), "No Virii Found");
  try {
    (void)detect.GetFileSuspicion(path);
    ADD_FAILURE() << "an empty file was rated";
  } catch (const platform::RunTimeError& error) {
    EXPECT_EQ(error.Number(), 9);
  }
}

TEST(StripTrailingNulls, OnlyAtTheEnd) {
  EXPECT_EQ(StripTrailingNulls(std::string("\0a\0b\0\0", 6)), std::string("\0a\0b", 4));
  EXPECT_EQ(StripTrailingNulls(std::string(3, '\0')), "");
}

}  // namespace
}  // namespace tallowin::analysis
