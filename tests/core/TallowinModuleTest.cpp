#include "core/TallowinModule.h"

#include <gtest/gtest.h>

#include "support/FakeHost.h"

namespace tallowin::core {
namespace {

TEST(TallowinModule, VersionsOfTheOperatingSystem) {
  test::FakeHost host;
  const TallowinModule module(host.paths, host.system);
  struct Case {
    platform::OsVersion version;
    int kind;
    bool win9x;
  };
  const Case cases[] = {{{1, 4, 0}, 1, true},   {{1, 4, 10}, 2, true}, {{1, 4, 90}, 0, true},
                        {{2, 3, 51}, 3, false}, {{2, 5, 0}, 5, false}, {{2, 6, 1}, 0, false},
                        {{2, 2, 0}, 0, false},  {{3, 4, 0}, 0, false}};
  for (const auto& one : cases) {
    host.system.version = one.version;
    EXPECT_EQ(module.GetOsKind(), one.kind) << one.version.minorVersion;
    EXPECT_EQ(module.IsWin9x(), one.win9x);
  }
}

TEST(TallowinModule, PathsAndVersion) {
  test::FakeHost host;
  TallowinModule module(host.paths, host.system);
  std::string path = "/tmp";
  EXPECT_EQ(AddBackslash(path, '/'), "/tmp/");
  EXPECT_EQ(AddBackslash(path, '/'), "/tmp/");
  EXPECT_EQ(path, "/tmp/");
  EXPECT_EQ(module.AppFolder(), host.folder.Path() + "/");

  module.SetAppVersion(4, 1, 1);
  EXPECT_EQ(module.AppVersion, "4.11");
  module.SetIniPaths();
  EXPECT_TRUE(module.SystemIniPath.ends_with("/WINDOWS/SYSTEM.INI"));
  EXPECT_TRUE(module.WinIniPath.starts_with("/TMP/TALLOWIN-")) << module.WinIniPath;
}

}  // namespace
}  // namespace tallowin::core
