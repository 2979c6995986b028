#include "platform/linux/LinuxShell.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "platform/linux/SqliteRegistry.h"
#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host {
namespace {

/// The opener is a script that notes how many arguments it got, and which.
class LinuxShellTest : public testing::Test {
 protected:
  LinuxShellTest() {
    test::WriteFile(opener_, "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$@\" > '" + noted_ +
                                 ".part'\nmv '" + noted_ + ".part' '" + noted_ + "'\n");
    (void)chmod(opener_.c_str(), 0700);
  }

  std::string Opened(const std::string& file) {
    std::filesystem::remove(noted_);
    EXPECT_GT(shell_.Execute("Open", file, 1), 32) << file;
    return Noted();
  }

  std::string Noted() const {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!std::filesystem::exists(noted_) && std::chrono::steady_clock::now() < limit) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return test::FileText(noted_);
  }

  std::string Imported() {
    std::unique_ptr<RegistryKey> key;
    RegistryValue value;
    if (registry_.OpenKey(RegistryRoot::CurrentUser, "Software\\Test", key) != registry::kSuccess ||
        key->QueryValue("a", value) != registry::kSuccess) {
      return "";
    }
    return value.data;
  }

  test::TemporaryHome home_;
  std::string noted_ = home_.Path() + "/noted";
  std::string opener_ = home_.Path() + "/opener";
  std::string reg_ = home_.Path() + "/my presets.reg";
  SqliteRegistry registry_{home_.Path() + "/registry.sqlite"};
  LinuxShell shell_{registry_, 0025, opener_};
};

void WritePresets(const std::string& path, const std::string& value) {
  test::WriteFile(
      path, "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Test]\r\n\"a\"=\"" + value + "\"\r\n");
}

TEST_F(LinuxShellTest, HandsOverOneArgument) {
  WritePresets(reg_, "x");
  EXPECT_EQ(Opened("HTTPS://host.example/a b?c=\"d\";$(e)"),
            "1\nHTTPS://host.example/a%20b?c=%22d%22%3B%24%28e%29\n");
  EXPECT_EQ(Opened("mailto:abuse@host.example"), "1\nmailto:abuse@host.example\n");
  EXPECT_EQ(Opened(home_.Path()), "1\n" + home_.Path() + "\n");
  EXPECT_EQ(Opened(reg_), "1\n" + reg_ + "\n");
  EXPECT_EQ(Imported(), "") << "a document is not imported";
}

TEST_F(LinuxShellTest, OpensWithTheUsersFileModeMask) {
  test::WriteFile(opener_, "#!/bin/sh\numask > '" + noted_ + ".part'\nmv '" + noted_ + ".part' '" +
                               noted_ + "'\n");
  EXPECT_EQ(Opened(home_.Path()), "0025\n");
}

TEST_F(LinuxShellTest, WaitsForTheProgramOfACommandLineUpToALimit) {
  using namespace std::chrono_literals;
  const std::string program = home_.Path() + "/my program";
  test::WriteFile(program,
                  "#!/bin/sh\nsleep 0.2\n(umask; printf '%s,' \"$@\") > '" + noted_ + "'\n");
  (void)chmod(program.c_str(), 0700);
  EXPECT_TRUE(shell_.RunAndWait('"' + program + "\" \"a b\" $HOME;x", 20s));
  EXPECT_EQ(test::FileText(noted_), "0025\na b,$HOME;x,") << "it has ended when the call returns";

  const std::string go = home_.Path() + "/go";
  test::WriteFile(program, "#!/bin/sh\nwhile [ ! -e '" + go +
                               "' ]; do sleep 0.01; done\necho on > '" + noted_ + ".part'\nmv '" +
                               noted_ + ".part' '" + noted_ + "'\n");
  std::filesystem::remove(noted_);
  EXPECT_TRUE(shell_.RunAndWait('"' + program + '"', 50ms));
  test::WriteFile(go, "");
  EXPECT_EQ(Noted(), "on\n") << "it runs on behind the limit";

  EXPECT_FALSE(shell_.RunAndWait("", 1s));
  EXPECT_FALSE(shell_.RunAndWait(home_.Path() + "/none", 1s));
}

TEST_F(LinuxShellTest, RefusesAndRunsNothing) {
  const std::string starter = home_.Path() + "/x.Desktop";
  test::WriteFile(starter, "[Desktop Entry]\n");
  const std::string program = home_.Path() + "/readme";
  test::WriteFile(program, "MZ\x90");
  for (const std::string& file :
       {std::string(), std::string("--version"), std::string("-"), std::string("/no/such/file"),
        std::string("ls"), std::string("ls; touch x"), std::string("javascript:alert(1)"),
        std::string("file:///etc/passwd"), std::string("http://a.example/\nb"),
        std::string("mailto:a@b.example?attach=/etc/passwd"), opener_, starter, program}) {
    EXPECT_LE(shell_.Execute("Open", file, 1), 32) << file;
  }
  EXPECT_EQ(shell_.Execute("Print", reg_, 1), 31);
  EXPECT_EQ(LinuxShell(registry_, 0, home_.Path() + "/none").Execute("Open", home_.Path(), 1), 31);
}

TEST_F(LinuxShellTest, RegistryEditorImportsInPlace) {
  int number = 0;
  for (const std::string& command : {home_.Path() + "/drive c/windows/regedit.exe /s \"" + reg_,
                                     "C:\\WINDOWS\\REGEDIT.EXE /S \"" + reg_ + "\"",
                                     "regedit " + reg_, "\"/w/regedit.exe\" \t/s\t" + reg_}) {
    const std::string value = std::to_string(++number);
    WritePresets(reg_, value);
    EXPECT_GT(shell_.Execute("Open", command, 1), 32) << command;
    EXPECT_EQ(Imported(), value) << command;
  }
}

TEST_F(LinuxShellTest, ImportsNothingElse) {
  WritePresets(reg_, "x");
  for (const std::string& command :
       {"http://host.example/regedit.exe /s \"" + reg_, "notregedit /s \"" + reg_,
        "regeditor /s \"" + reg_, "evil /c regedit /s \"" + reg_,
        "regedit /s \"" + reg_ + ".missing", std::string("regedit"), "regedit /e " + reg_}) {
    (void)shell_.Execute("Open", command, 1);
    EXPECT_EQ(Imported(), "") << command;
  }
  test::WriteFile(reg_, "REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Test]\n\"a\"=\"1\"\n\"b\"=junk\n");
  EXPECT_LE(shell_.Execute("Open", "regedit /s \"" + reg_, 1), 32);
  EXPECT_EQ(Imported(), "1");
}

}  // namespace
}  // namespace tallowin::platform::linux_host
