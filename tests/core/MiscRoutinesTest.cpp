#include <gtest/gtest.h>

#include "core/INIFiles.h"
#include "core/MiscRoutines.h"
#include "core/TallowinModule.h"
#include "forms/Form.h"
#include "platform/RunTimeError.h"
#include "support/FakeHost.h"

namespace tallowin::core {
namespace {

TEST(INIFiles, ReadIniTrimsAndCuts) {
  test::FakeIniFiles files;
  const INIFiles ini(files);
  for (const auto& [stored, read] : std::vector<std::pair<std::string, std::string>>{
           {"   ", ""},
           {"  explorer.exe /x ", "explorer.exe /x"},
           {std::string(249, 'a') + "b", std::string(249, 'a')},
           {std::string(248, 'a') + "  b", std::string(248, 'a')}}) {
    files.values["f s k"] = stored;
    EXPECT_EQ(ini.ReadIni("f", "s", "k"), read);
  }
}

TEST(TallowinModule, VersionsOfTheOperatingSystem) {
  test::FakeHost host;
  const TallowinModule module(host.paths, host.system);
  for (const auto& [version, kind] :
       std::vector<std::pair<platform::OsVersion, int>>{{{1, 4, 0}, 1},
                                                        {{1, 4, 10}, 2},
                                                        {{1, 4, 90}, 0},
                                                        {{2, 3, 51}, 3},
                                                        {{2, 5, 0}, 5},
                                                        {{2, 6, 1}, 0},
                                                        {{2, 2, 0}, 0},
                                                        {{3, 4, 0}, 0}}) {
    host.system.version = version;
    EXPECT_EQ(module.GetOsKind(), kind) << version.minorVersion;
    EXPECT_EQ(module.IsWin9x(), version.platformId == 1);
  }
}

class CountingLoop : public test::FakeLoop {
 public:
  void DoEvents() override {
    if (++turns == 1000) throw platform::ProgramEnded{};
  }
  int turns = 0;
};

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

TEST(MiscRoutines, Base64) {
  for (const auto& [bytes, text] : std::vector<std::pair<std::string, std::string>>{
           {"", ""},
           {"foob", "Zm9vYg=="},
           {"fooba", "Zm9vYmE="},
           {"foobar", "Zm9vYmFy"},
           {std::string("\x00\xFF\xFB\xF0", 4), "AP/78A=="}}) {
    EXPECT_EQ(Base64Encode(bytes), text);
    EXPECT_EQ(Base64Decode(text), bytes);
  }
  std::string line;
  for (int i = 0; i < 18; ++i) line += "QUFB";
  EXPECT_EQ(Base64Encode(std::string(54, 'A')), line + "\r\n");
  EXPECT_EQ(Base64Encode(std::string(55, 'A')), line + "\r\nQQ==");
  EXPECT_EQ(Base64Decode(line + line + "\r\nQQ=="), std::string(109, 'A'));
  EXPECT_EQ(Base64Decode(std::string("Zm\0 9\xFFv-_Y=mF.y", 15)), "foobar");
  EXPECT_EQ(Base64Decode("Zm9vY"), "foo");
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
