#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/linux/AvailableMemory.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/TemporaryHome.h"
#include "support/ErrorOf.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

class LinuxFilesTest : public testing::Test {
 protected:
  test::TemporaryHome home_;
  WindowsDrive drive_{home_.Folders()};
  LinuxFiles files_{drive_};

  int ErrorOfRead(const std::string& path) {
    return tallowin::test::ErrorOf([&] { (void)files_.Read(path); });
  }
  int ErrorOfDelete(const std::string& path) {
    return tallowin::test::ErrorOf([&] { files_.Delete(path); });
  }
};

TEST_F(LinuxFilesTest, ReadsOrdinaryFilesAndNothingElse) {
  const std::string large(5 << 20, 'x');
  test::WriteFile(home_.Path() + "/a*b", std::string("1\0002", 3));
  test::WriteFile(home_.Path() + "/large", large);
  EXPECT_EQ(files_.Read(home_.Path() + "/a*b").Text(), std::string_view("1\0002", 3));
  EXPECT_EQ(files_.Read(home_.Path() + "/large").Text(), large);
  test::WriteFile(drive_.Root() + "/Mixed.Exe", "m");
  EXPECT_EQ(files_.Read(drive_.Root() + "/MIXED.EXE").Text(), "m");

  test::WriteFile(home_.Path() + "/empty", "");
  ASSERT_EQ(mkfifo((home_.Path() + "/pipe").c_str(), S_IRWXU), 0);
  for (const char* name : {"/empty", "/pipe", "/none", "", "/a*"}) {
    EXPECT_EQ(ErrorOfRead(home_.Path() + name), 9) << name;
  }
  EXPECT_EQ(ErrorOfRead("/dev/zero"), 9);
  EXPECT_EQ(ErrorOfRead(std::string("/bin/sh\0x", 9)), 9);
}

TEST_F(LinuxFilesTest, MemoryIsWhatMachineAndControlGroupsLeave) {
  const std::string groups = home_.Path() + "/sys/fs/cgroup";
  fs::create_directories(home_.Path() + "/proc/self");
  fs::create_directories(groups + "/outer/inner");
  EXPECT_EQ(AvailableMemory(home_.Path()), UINT64_MAX);
  test::WriteFile(home_.Path() + "/proc/meminfo", "MemAvailable: 90 kB\nSwapFree: 10 kB\n");
  EXPECT_EQ(AvailableMemory(home_.Path()), 102400U);
  test::WriteFile(home_.Path() + "/proc/self/cgroup", "1:cpu:/other\n0::/outer/inner\n");
  test::WriteFile(groups + "/outer/inner/memory.max", "max\n");
  test::WriteFile(groups + "/outer/inner/memory.current", "99000\n");
  test::WriteFile(groups + "/outer/memory.max", "50000\n");
  test::WriteFile(groups + "/outer/memory.current", "30000\n");
  EXPECT_EQ(AvailableMemory(home_.Path()), 20000U);
  test::WriteFile(groups + "/outer/memory.stat", "anon 1\ninactive_file 2000\nactive_file 500\n");
  EXPECT_EQ(AvailableMemory(home_.Path()), 22500U);
  test::WriteFile(groups + "/memory.max", "7\n");
  test::WriteFile(groups + "/memory.current", "8\n");
  EXPECT_EQ(AvailableMemory(home_.Path()), 0U);
}

TEST_F(LinuxFilesTest, DeletesOneName) {
  test::WriteFile(home_.Path() + "/target", "x");
  fs::create_symlink(home_.Path() + "/target", home_.Path() + "/link");
  files_.Delete(home_.Path() + "/link");
  EXPECT_EQ(test::NamesIn(home_.Path()), std::vector<std::string>{"target"});
  EXPECT_EQ(ErrorOfDelete(home_.Path() + "/t*"), 53);
  EXPECT_EQ(ErrorOfDelete(home_.Path() + "/none"), 53);
  EXPECT_EQ(ErrorOfDelete(home_.Path() + "/target/below"), 53);
  EXPECT_EQ(ErrorOfDelete(home_.Path()), 75);
  EXPECT_EQ(ErrorOfDelete(std::string("/x\0y", 4)), 53);
}

}  // namespace
}  // namespace tallowin::platform::linux_host
