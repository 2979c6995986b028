#include "core/MiscRoutines.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "forms/Form.h"
#include "platform/RunTimeError.h"
#include "support/FakeHost.h"

namespace tallowin::core {
namespace {

/// Makes the file that a test has named, or fails like a folder that cannot be written.
class PathsWithTempFile : public test::FakePaths {
 public:
  using FakePaths::FakePaths;
  std::string MakeTempFile(std::string_view folder, std::string_view prefix) override {
    if (denied) throw platform::RunTimeError(75, "Path/File access error");
    std::string path = std::string(folder) + "/" + std::string(prefix) + "01AB.tmp";
    std::ofstream{path};
    return path;
  }
  bool denied = false;
};

class CountingLoop : public test::FakeLoop {
 public:
  void DoEvents() override {
    if (++turns == 1000) throw platform::ProgramEnded{};
  }
  int turns = 0;
};

std::vector<std::string> Items(const forms::ItemList& list) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < list.ListCount(); ++i) items.push_back(list.List(i));
  return items;
}

TEST(MiscRoutines, TextRoutines) {
  EXPECT_EQ(BoolText(-1), "True");
  EXPECT_EQ(BoolText(1), "False");
  EXPECT_EQ(BoolText(0), "False");
  EXPECT_EQ(DigitsOnly("a1b\xFF"
                       "2-3.4 "),
            "1234");
  EXPECT_EQ(ReplaceChar("9/16/2000", "/", "_"), "9_16_2000");
  EXPECT_EQ(ReplaceChar("aba", "a", "aa"), "aabaa");
  EXPECT_EQ(ReplaceChar("", "a", "b"), "");
  EXPECT_EQ(ReplaceChar("abab", "ab", "x"), "abab");
  EXPECT_EQ(ReplaceChar("ab", "", "x"), "ab");
}

TEST(MiscRoutines, RemovesDuplicatesAndCountsComparisons) {
  forms::Form form("Form");
  forms::ComboBox list(form, "list");
  for (const char* item : {"a", "b", "a", "A", "a", "b"}) list.AddItem(item);
  EXPECT_EQ(RemoveDuplicates(list), 5 + 2 + 0);
  EXPECT_EQ(Items(list), (std::vector<std::string>{"a", "b", "A"}));
}

TEST(MiscRoutines, RemoveDuplicatesCountsInSixteenBits) {
  forms::Form form("Form");
  forms::ComboBox list(form, "list");
  for (int i = 0; i < 256; ++i) list.AddItem(std::to_string(i));
  EXPECT_EQ(RemoveDuplicates(list), 32640);
  list.AddItem("256");
  try {
    RemoveDuplicates(list);
    FAIL() << "257 items need 32896 comparisons";
  } catch (const platform::RunTimeError& error) {
    EXPECT_EQ(error.Number(), 6);
    EXPECT_EQ(error.Description(), "Overflow");
  }

  // What strangers can put there by the hundred thousand is removed in one step.
  list.Clear();
  for (int i = 0; i < 300000; ++i) list.AddItem("a@b.c");
  int told = 0;
  const auto observation = list.Observe([&](const forms::Change&) { ++told; });
  EXPECT_THROW(RemoveDuplicates(list), platform::RunTimeError);
  EXPECT_EQ(list.ListCount(), 300000U - 32767U);
  EXPECT_EQ(told, 2);
}

TEST(MiscRoutines, Base64KnownAnswers) {
  const std::vector<std::pair<std::string, std::string>> vectors = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {std::string("\x00\xFF\xFB\xF0", 4), "AP/78A=="}};
  for (const auto& [bytes, text] : vectors) {
    EXPECT_EQ(Base64Encode(bytes), text);
    EXPECT_EQ(Base64Decode(text), bytes);
  }
}

TEST(MiscRoutines, Base64LineLayout) {
  const std::string line = "QUFB";  // "AAA"
  std::string full;
  for (int i = 0; i < 18; ++i) full += line;
  EXPECT_EQ(Base64Encode(std::string(54, 'A')), full + "\r\n");
  EXPECT_EQ(Base64Encode(std::string(55, 'A')), full + "\r\nQQ==");
  EXPECT_EQ(Base64Decode(full + "\r\n" + full + "\r\nQQ=="), std::string(109, 'A'));
  EXPECT_EQ(Base64Decode(full + full + full), std::string(162, 'A'));

  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes += static_cast<char>(i * 7);
  EXPECT_EQ(Base64Decode(Base64Encode(bytes)), bytes);
}

TEST(MiscRoutines, Base64DecodeSkipsWhatIsNoLetter) {
  EXPECT_EQ(Base64Decode(std::string("Zm\0 9\xFFv-_Y=mF.y", 15)), "foobar");
  EXPECT_EQ(Base64Decode("Zm9vY"), "foo");
  EXPECT_EQ(Base64Decode("=-="), "");
}

TEST(MiscRoutines, TempFileNameIsFree) {
  const test::TemporaryFolder driveC;
  PathsWithTempFile paths(driveC.Path());
  test::FakeLoop loop;
  MiscRoutines routines(paths, loop);
  EXPECT_EQ(routines.MakeTempFileName(), driveC.Path() + "/TW01AB.tmp");
  EXPECT_TRUE(std::filesystem::is_empty(driveC.Path()));
  paths.denied = true;
  EXPECT_EQ(routines.MakeTempFileName(), "");
}

TEST(MiscRoutines, WaitForMillisecondsHasNoClock) {
  test::FakePaths paths("");
  CountingLoop loop;
  MiscRoutines routines(paths, loop);
  routines.WaitForMilliseconds(0);
  EXPECT_EQ(loop.turns, 0);
  EXPECT_THROW(routines.WaitForMilliseconds(1), platform::ProgramEnded);
  EXPECT_EQ(loop.turns, 1000);
}

}  // namespace
}  // namespace tallowin::core
