#include "platform/linux/LinuxPaths.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>

#include "platform/linux/TemporaryHome.h"
#include "support/ErrorOf.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

/// Puts the variable back when the test is over.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    if (old != nullptr) old_ = old;
    had_ = old != nullptr;
    Set(value);
  }
  ~Variable() { Set(had_ ? old_.c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void Set(const char* value) {
    (void)(value != nullptr ? setenv(name_, value, 1) : unsetenv(name_));
  }
  const char* name_;
  std::string old_;
  bool had_ = false;
};

class LinuxPathsTest : public testing::Test {
 protected:
  test::TemporaryHome home_;
  LinuxFolders folders_ = home_.Folders();
};

TEST_F(LinuxPathsTest, TheProgramsFolderShowsWhatIsInstalledNow) {
  fs::create_directories(folders_.installedData + "/tallowinhlp");
  test::WriteFile(folders_.installedData + "/defaults.reg", "new");
  test::WriteFile(folders_.installedData + "/hacker.wav", "new");
  fs::create_directories(folders_.data);
  test::WriteFile(folders_.data + "/defaults.reg", "the user's");
  fs::create_symlink(home_.Path() + "/an older place/hacker.wav", folders_.data + "/hacker.wav");
  folders_.Prepare();
  test::WriteFile(folders_.installedData + "/tallowinhlp/index", "of an upgrade");
  folders_.Prepare();
  EXPECT_EQ(test::FileText(folders_.data + "/defaults.reg"), "the user's");
  EXPECT_EQ(test::FileText(folders_.data + "/hacker.wav"), "new");
  EXPECT_EQ(test::FileText(folders_.data + "/tallowinhlp/index"), "of an upgrade");
  struct stat status = {};
  ASSERT_EQ(stat(folders_.config.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(LinuxPathsTest, DriveCIsTheWinePrefixWhereThereIsOne) {
  EXPECT_EQ(WindowsDrive(folders_).WindowsFolder(), folders_.data + "/drive_c/windows");
  EXPECT_TRUE(fs::is_directory(folders_.data + "/drive_c/windows"));
  fs::create_directories(home_.Path() + "/.wine/drive_c/windows");
  EXPECT_EQ(WindowsDrive(folders_).Root(), home_.Path() + "/.wine/drive_c");
  folders_.winePrefix = home_.Path() + "/other";
  EXPECT_EQ(WindowsDrive(folders_).Root(), folders_.data + "/drive_c");
  fs::create_directories(folders_.winePrefix + "/drive_c");
  EXPECT_EQ(WindowsDrive(folders_).SystemFolder(),
            folders_.winePrefix + "/drive_c/windows/system32");
  EXPECT_TRUE(fs::is_empty(folders_.winePrefix + "/drive_c")) << "a foreign prefix stays as it is";
}

TEST_F(LinuxPathsTest, NamesOnDriveCMatchInAnyCaseExactOnesFirst) {
  const WindowsDrive drive(folders_);
  const LinuxPaths paths(folders_, drive);
  const std::string root = drive.Root();
  fs::create_directories(root + "/Program Files");
  test::WriteFile(root + "/Program Files/A.TXT", "");
  test::WriteFile(root + "/Program Files/a.txt", "");
  test::WriteFile(folders_.data + "/off.txt", "");

  EXPECT_EQ(drive.Resolve(root + "/PROGRAM FILES/a.txt"), root + "/Program Files/a.txt");
  EXPECT_EQ(drive.Resolve(root + "/program files/A.txt"), root + "/Program Files/A.TXT");
  EXPECT_EQ(drive.Resolve(root + "/program files/New"), root + "/Program Files/New");
  EXPECT_EQ(drive.Resolve(folders_.data + "/OFF.TXT"), folders_.data + "/OFF.TXT");
  const std::string wayThere = root.substr(0, root.rfind('/'));
  std::string inCapitals = wayThere;
  for (char& c : inCapitals) c = static_cast<char>(std::toupper(c));
  EXPECT_EQ(drive.Resolve(inCapitals), wayThere);

  EXPECT_TRUE(paths.Find(root + "/program FILES/*.tX?"));
  EXPECT_FALSE(paths.Find(root + "/program FILES/?.t"));
  EXPECT_TRUE(paths.Find(folders_.data + "/o*f.*"));
  EXPECT_FALSE(paths.Find(folders_.data + "/O*f.*"));
  EXPECT_FALSE(paths.Find(root + "/Program Files"));
  EXPECT_FALSE(paths.Find(root + "/Program*"));
  EXPECT_FALSE(paths.Find(""));
  EXPECT_FALSE(paths.Find(folders_.data + "/off.txt" + std::string("\0x", 2)));
}

TEST_F(LinuxPathsTest, TempFilesAreNewAndPrivate) {
  const WindowsDrive drive(folders_);
  LinuxPaths paths(folders_, drive);
  const std::string first = paths.MakeTempFile(paths.DriveC(), "TW");
  EXPECT_NE(first, paths.MakeTempFile(paths.DriveC(), "TW"));
  EXPECT_TRUE(first.starts_with(drive.Root() + "/TW")) << first;
  EXPECT_EQ(first.size(), (drive.Root() + "/TW01AB.tmp").size());
  struct stat status = {};
  ASSERT_EQ(stat(first.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(tallowin::test::ErrorOf([&] { paths.MakeTempFile(home_.Path() + "/none", "TW"); }), 75);
}

TEST_F(LinuxPathsTest, SearchesFoldersInOrder) {
  const std::string first = home_.Path() + "/first";
  const std::string second = home_.Path() + "/second";
  const Variable path("PATH", (".::" + first + ":" + second).c_str());
  const WindowsDrive drive(folders_);
  const LinuxPaths paths(folders_, drive);
  fs::create_directories(first + "/tool.exe");
  fs::create_directories(second);
  test::WriteFile(second + "/tool.exe", "");
  EXPECT_EQ(paths.SearchPath("tool.exe"), second + "/tool.exe") << "a folder is no file";
  test::WriteFile(paths.WindowsFolder() + "/Tool.exe", "");
  EXPECT_EQ(paths.SearchPath("TOOL.EXE"), paths.WindowsFolder() + "/Tool.exe");
  EXPECT_EQ(paths.SearchPath("tool.exe /s"), "");
  EXPECT_EQ(paths.SearchPath("\"tool.exe\""), "");
  EXPECT_EQ(paths.SearchPath(first + "/../second/tool.exe"), second + "/tool.exe");
  EXPECT_EQ(paths.SearchPath(second + "/tool.exe /s"), "");
  EXPECT_EQ(paths.SearchPath(""), "");
}

}  // namespace
}  // namespace tallowin::platform::linux_host
