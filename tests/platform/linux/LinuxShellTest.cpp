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
  LinuxShell shell_{registry_, 0025, {.opener = opener_}};
};

void WritePresets(const std::string& path, const std::string& value) {
  test::WriteFile(
      path, "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Test]\r\n\"a\"=\"" + value + "\"\r\n");
}

TEST_F(LinuxShellTest, HandsOverOneArgument) {
  WritePresets(reg_, "x");
  EXPECT_EQ(Opened("HTTPS://host.example/a b?c=\"d\";$(e)"),
            "1\nHTTPS://host.example/a%20b?c=%22d%22%3B%24%28e%29\n");
  EXPECT_EQ(Opened("ftp://host.example/"), "1\nftp://host.example/\n");
  EXPECT_EQ(Opened(home_.Path()), "1\n" + home_.Path() + "\n");
  EXPECT_EQ(Opened(reg_), "1\n" + reg_ + "\n");
  EXPECT_EQ(Imported(), "") << "a document is not imported";
}

TEST_F(LinuxShellTest, RefusesAndRunsNothing) {
  const std::string starter = home_.Path() + "/x.Desktop";
  test::WriteFile(starter, "[Desktop Entry]\n");
  const std::string program = home_.Path() + "/readme";
  test::WriteFile(program, "MZ\x90");
  const std::string bare = home_.Path() + "/notes.txt";
  test::WriteFile(bare, "\n[Desktop Entry]\nExec=x\n");
  const std::string marked = home_.Path() + "/marked.txt";
  test::WriteFile(marked, "text");
  (void)chmod(marked.c_str(), 0700);
  const std::string link = home_.Path() + "/link.txt";
  std::filesystem::create_symlink("x.Desktop", link);
  const std::string pipe = home_.Path() + "/pipe";
  (void)mkfifo(pipe.c_str(), 0600);
  std::vector<std::string> refused = {"",   "--version",   "/no/such/file",
                                      "ls", "ls; touch x", "/bin/sh"};
  refused.insert(refused.end(),
                 {"javascript:alert(1)", "file:///etc/passwd", "http://a.example/\nb",
                  "mailto:a@b.example", "file://" + starter});
  refused.insert(refused.end(), {opener_, starter, program, bare, marked, link, pipe});
  for (const std::string& file : refused) {
    EXPECT_LE(shell_.Execute("Open", file, 1), 32) << file;
  }
  EXPECT_EQ(shell_.Execute("Print", reg_, 1), 31);
  EXPECT_EQ(
      LinuxShell(registry_, 0, {.opener = home_.Path() + "/none"}).Execute("Open", home_.Path(), 1),
      31);
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
