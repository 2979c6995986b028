#include "platform/linux/LinuxIniFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <vector>

#include "platform/linux/IniText.h"
#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host {
namespace {

TEST(IniText, Reads) {
  struct Case {
    std::string text, section, key, value;
  };
  const std::vector<Case> cases = {
      {"[boot]\r\nshell=explorer.exe\r\n", "boot", "shell", "explorer.exe"},
      {" [ Boot ] ; c\n Shell \t=  a b  \n", "BOOT", "sHELL", "a b"},
      {"[boot]\nshell=a", "boot", "shell", "a"},
      {"[boot]\nshell=\" a \"\n", "boot", "shell", " a "},
      {"[boot]\nshell='a'\n", "boot", "shell", "a"},
      {"[boot]\nshell=\"\"a\"\"\n", "boot", "shell", "\"a\""},
      {"[boot]\nshell=\"a'\n", "boot", "shell", "\"a'"},
      {"[boot]\nshell=\"\n", "boot", "shell", "\""},
      {"[boot]\n;shell=a\nshell=b=c ; d\nshell=e\n", "boot", "shell", "b=c ; d"},
      {"[boot]\nx=1\n[other]\nshell=a\n[boot]\nshell=b\n", "boot", "shell", ""},
      {"shell=a\n[boot]\n[other]\n", "boot", "shell", ""},
      {"[boot]\n[other\nshell=a\n", "boot", "shell", "a"},
      {"[boot]\nshell\nshell=a\n", "boot", "shell", ""},
      {"[boot]\nshellx=a\nshel=b\n", "boot", "shell", ""},
      {"\xEF\xBB\xBF[boot]\nshell=a\n", "boot", "shell", "a"},
      {std::string("[bo\0ot]\nshell=\0\xFF\n[", 19), std::string("bo\0ot", 5), "shell",
       std::string("\0\xFF", 2)},
      {"[", "", "", ""},
      {"", "boot", "shell", ""},
  };
  for (const auto& [text, section, key, value] : cases) {
    EXPECT_EQ(IniValue(text, section, key), value) << text;
  }
}

TEST(IniText, ChangesNothingButTheValue) {
  struct Case {
    std::string before, value, after;
  };
  const std::vector<Case> cases = {
      {"", "x", "[boot]\r\nshell=x\r\n"},
      {"a=1", "x", "a=1\r\n[boot]\r\nshell=x\r\n"},
      {"; c\n[Boot]\n Shell = \"old\" \r\nother= 'q'\n", "x",
       "; c\n[Boot]\n Shell = x\r\nother= 'q'\n"},
      {"[boot]\nshell= old\n", "", "[boot]\nshell=\n"},
      {"[boot]\nshell\nshell=b", "x", "[boot]\nshell=x\nshell=b"},
      {"[boot]", "x", "[boot]\r\nshell=x\r\n"},
      {"[boot]\na=1\n\n; c\n\n[z]\nshell=z\n", "x",
       "[boot]\na=1\n\n; c\nshell=x\n\n[z]\nshell=z\n"},
      {"[boot]\n[boot]\nshell=second\n", "x", "[boot]\nshell=x\n[boot]\nshell=second\n"},
  };
  for (const auto& [before, value, after] : cases) {
    EXPECT_EQ(WithIniValue(before, "boot", "shell", value), after) << before;
  }
}

class LinuxIniFilesTest : public testing::Test {
 protected:
  test::TemporaryHome home_;
  WindowsDrive drive_{home_.Folders()};
  std::int64_t later_ = 0;
  LinuxIniFiles files_{drive_, [this] { return IniAnswers::SystemTime() + later_; }};
  std::string windows_ = drive_.WindowsFolder();
  std::string file_ = windows_ + "/win.ini";

  std::string Read(std::size_t bufferSize = 250) {
    return files_.GetPrivateProfileString(file_, "windows", "run", bufferSize);
  }
  bool Write(const std::string& value) {
    return files_.WritePrivateProfileString(file_, "windows", "run", value);
  }
};

TEST_F(LinuxIniFilesTest, UpperCasedPathNamesTheSameFile) {
  test::WriteFile(windows_ + "/System.ini", "[boot]\nshell=a\n");
  std::string upper;
  for (const char c : windows_ + "/system.ini") {
    upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  EXPECT_EQ(files_.GetPrivateProfileString(upper, "boot", "shell", 250), "a");
  EXPECT_TRUE(files_.WritePrivateProfileString(upper, "boot", "shell", "b"));
  EXPECT_EQ(test::FileText(windows_ + "/System.ini"), "[boot]\nshell=b\n");
  EXPECT_EQ(test::NamesIn(windows_), std::vector<std::string>{"System.ini"});
}

/// Answers are remembered once the stamps of a file are older than a tick of its clock.
TEST_F(LinuxIniFilesTest, SeesEachChangeAtOnceThoughItRemembersAnswers) {
  const std::string other = windows_ + "/other.ini";
  for (const std::int64_t later : {std::int64_t{0}, std::int64_t{4'000'000'000}}) {
    later_ = later;
    test::WriteFile(file_, "[windows]\nrun=one\n");
    EXPECT_EQ(Read(), "one");
    EXPECT_EQ(Read(), "one");
    EXPECT_EQ(Read(3), "on") << "another buffer, another answer";
    // Of the same length, in place, with the old time of modification.
    const auto modified = std::filesystem::last_write_time(file_);
    test::WriteFile(file_, "[windows]\nrun=two\n");
    std::filesystem::last_write_time(file_, modified);
    EXPECT_EQ(Read(), "two");
    test::WriteFile(other, "[windows]\nrun=new\n");
    ASSERT_EQ(rename(other.c_str(), file_.c_str()), 0);
    EXPECT_EQ(Read(), "new");
    ASSERT_EQ(unlink(file_.c_str()), 0);
    EXPECT_EQ(Read(), "");
    test::WriteFile(other, "[windows]\nrun=far\n");
    ASSERT_EQ(symlink(other.c_str(), file_.c_str()), 0);
    EXPECT_EQ(Read(), "far");
    test::WriteFile(other, "[windows]\nrun=off\n");
    EXPECT_EQ(Read(), "off") << "behind a link";
    ASSERT_EQ(unlink(file_.c_str()), 0);
    test::WriteFile(windows_ + "/WIN.INI", "[windows]\nrun=big\n");
    EXPECT_EQ(Read(), "big");
    test::WriteFile(file_, "[windows]\nrun=low\n");
    EXPECT_EQ(Read(), "low") << "the name as it was asked for comes first";
    ASSERT_EQ(unlink(file_.c_str()), 0);
    EXPECT_EQ(Read(), "big");
    ASSERT_EQ(unlink((windows_ + "/WIN.INI").c_str()), 0);
  }
}

TEST_F(LinuxIniFilesTest, AShortageOfDescriptorsIsNoChange) {
  test::WriteFile(file_, "[windows]\nrun=there\n");
  EXPECT_EQ(Read(3), "th");
  EXPECT_EQ(Read(), "there");
  const test::NoDescriptors shortage;
  EXPECT_EQ(Read(), "there");
}

TEST_F(LinuxIniFilesTest, ReplacesTheFileBehindALinkAndKeepsItsRights) {
  const std::string real = home_.Path() + "/real.ini";
  test::WriteFile(real, "[windows]\nrun=old\n");
  ASSERT_EQ(chmod(real.c_str(), 0640), 0);
  ASSERT_EQ(symlink(real.c_str(), file_.c_str()), 0);
  EXPECT_TRUE(Write("new"));
  EXPECT_EQ(test::FileText(real), "[windows]\nrun=new\n");
  struct stat status = {};
  ASSERT_EQ(lstat(file_.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  ASSERT_EQ(stat(real.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

/// A reader that has the old file open goes on reading the old text: the file is not rewritten in
/// place.
TEST_F(LinuxIniFilesTest, ReplacementIsOneStep) {
  test::WriteFile(file_, "[windows]\nrun=old\n");
  std::ifstream reader(file_);
  ASSERT_TRUE(Write(std::string(1000, 'n')));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "[windows]\nrun=old\n");
  EXPECT_EQ(test::NamesIn(windows_), std::vector<std::string>{"win.ini"});
}

TEST_F(LinuxIniFilesTest, RefusesWhatItCannotKeep) {
  test::WriteFile(file_, "[windows]\nrun=old\n");
  EXPECT_FALSE(Write("a\r\n[boot]\nshell=evil"));
  EXPECT_FALSE(Write(std::string("a\0b", 3)));
  EXPECT_EQ(test::FileText(file_), "[windows]\nrun=old\n");

  ASSERT_EQ(truncate(file_.c_str(), (1 << 20) + 1), 0);
  EXPECT_EQ(Read(), "old");
  EXPECT_FALSE(Write("new"));

  ASSERT_EQ(unlink(file_.c_str()), 0);
  ASSERT_EQ(symlink("nowhere", file_.c_str()), 0);
  EXPECT_FALSE(Write("new"));
  ASSERT_EQ(unlink(file_.c_str()), 0);
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  EXPECT_EQ(Read(), "");
  EXPECT_FALSE(Write("new"));
}

}  // namespace
}  // namespace tallowin::platform::linux_host
