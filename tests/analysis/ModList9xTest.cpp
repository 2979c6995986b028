#include "analysis/ModList9x.h"

#include <gtest/gtest.h>

#include "support/FakeHost.h"

namespace tallowin::analysis {
namespace {

TEST(ModList9x, TrimAtNull) {
  EXPECT_EQ(TrimAtNull(std::string("a\0b\0", 4)), "a");
  EXPECT_EQ(TrimAtNull("no end"), "");
}

TEST(ModList9x, ProcessPathFromId) {
  test::FakeHost host;
  const core::TallowinModule module(host.paths, host.system);
  ModList9x list(host.processes, module);
  host.processes.modules[5] = {{1, "/bin/a"}, {2, "/lib/b"}};
  host.processes.modules[6] = {{1, "\\SystemRoot\\smss.exe"}};
  host.processes.modules[7] = {{1, "\\??\\/winlogon.exe"}};
  EXPECT_EQ(list.ProcessPathFromId(5), "/bin/a");
  EXPECT_EQ(list.ProcessPathFromId(6), host.folder.Path() + "/windows/smss.exe");
  EXPECT_EQ(list.ProcessPathFromId(7), "/winlogon.exe");
  EXPECT_EQ(list.ProcessPathFromId(8), "System");
  EXPECT_EQ(list.ProcessPathFromId(9), "Error");
  host.processes.modulesResult = platform::processes::kAccessDenied;
  EXPECT_EQ(list.ProcessPathFromId(5), host.folder.Path() + "/system/csrss.exe");
  host.processes.modulesResult = platform::processes::kNoSuchProcess;
  EXPECT_EQ(list.ProcessPathFromId(5), "Error");
}

}  // namespace
}  // namespace tallowin::analysis
