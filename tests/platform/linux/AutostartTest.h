// A whole system's places for autostart in a temporary folder, and the registry above them.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/AutostartRegistry.h"
#include "platform/linux/SqliteRegistry.h"
#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host::test {

using Key = std::unique_ptr<RegistryKey>;
using Rows = std::vector<std::pair<std::string, std::string>>;  // name and data

inline const std::string kRuns = "Software\\Microsoft\\Windows\\CurrentVersion\\";

class AutostartTest : public testing::Test {
 protected:
  AutostartTest() {
    for (const char* folder :
         {"/config/autostart", "/etc/xdg/autostart", "/etc/cron.d", "/tables", "/bin",
          "/config/systemd/user/default.target.wants", "/lib/systemd/system", "/outside",
          "/etc/systemd/system/multi-user.target.wants",
          "/etc/systemd/system/multi-user.target.requires"}) {
      std::filesystem::create_directories(top_ + folder);
    }
    // Stands for the real program: it replaces the table as a whole.
    Write("/bin/crontab", "#!/bin/sh\ncd " + top_ + "/tables || exit 2\n" +
                              "[ \"$1\" = -l ] && { cat me 2>/dev/null; exit; }\n" +
                              "cat > .new && mv .new me\n");
    EXPECT_EQ(chmod((top_ + "/bin/crontab").c_str(), 0700), 0);
  }

  /// Nothing but what the kernel tells makes this registry look again.
  void Open(std::chrono::nanoseconds hold = {},
            std::chrono::nanoseconds longestHold = std::chrono::hours(1)) {
    const AutostartTiming timing = {.hold = hold,
                                    .longestHold = longestHold,
                                    .fullLook = std::chrono::hours(1),
                                    .quickLook = std::chrono::hours(1)};
    registry_ = std::make_unique<AutostartRegistry>(store_, Places(), timing);
  }

  [[nodiscard]] AutostartPlaces Places() const {
    return {.userAutostart = top_ + "/config/autostart",
            .systemAutostart = {top_ + "/etc/xdg/autostart"},
            .desktops = {"KDE"},
            .programFolders = {top_ + "/bin"},
            .userUnits = {{top_ + "/config/systemd/user.control"}, {top_ + "/config/systemd/user"}},
            .systemUnits = {{top_ + "/etc/systemd/system"}, {top_ + "/lib/systemd/system", true}},
            .userName = "me",
            .systemCrontab = top_ + "/etc/crontab",
            .cronFolder = top_ + "/etc/cron.d",
            .userTables = top_ + "/tables",
            .crontabProgram = crontab_,
            .own = OwnAutostart::Of(top_ + "/bin"),
            .copies = top_ + "/undone"};
  }

  void Write(const std::string& path, const std::string& text) const {
    WriteFile(top_ + path, text);
  }
  static std::string Entry(const std::string& exec, const std::string& more = {}) {
    return "[Desktop Entry]\nType=Application\nExec=" + exec + "\n" + more;
  }

  Key OpenRun(RegistryRoot root, const std::string& key) {
    if (!registry_) Open();
    Key opened;
    EXPECT_EQ(registry_->OpenKey(root, kRuns + key, opened), registry::kSuccess);
    return opened;
  }
  Key UserRun() { return OpenRun(RegistryRoot::CurrentUser, "Run"); }
  Key MachineRun() { return OpenRun(RegistryRoot::LocalMachine, "Run"); }
  Key Services() { return OpenRun(RegistryRoot::LocalMachine, "RunServices"); }

  static Rows All(RegistryKey& key) {
    Rows rows;
    std::string name;
    RegistryValue value;
    RegistryResult result = registry::kSuccess;
    while ((result = key.EnumValue(static_cast<std::uint32_t>(rows.size()), name, value)) ==
           registry::kSuccess) {
      rows.emplace_back(name, value.data);
    }
    EXPECT_EQ(result, registry::kNoMoreItems);
    return rows;
  }
  /// The data in their order.
  static std::vector<std::string> Commands(RegistryKey& key) {
    std::vector<std::string> commands;
    for (const auto& row : All(key)) commands.push_back(row.second);
    return commands;
  }
  /// What lies in the folders of copies, by its path there.
  [[nodiscard]] std::vector<std::string> Copies() const {
    std::vector<std::string> copies;
    const std::string folder = top_ + "/undone";
    if (!std::filesystem::exists(folder)) return copies;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (!entry.is_directory() || entry.is_symlink()) copies.push_back(entry.path());
    }
    return copies;
  }

  TemporaryHome home_;
  std::string top_ = home_.Path();
  std::vector<std::string> crontab_ = {top_ + "/bin/crontab"};
  SqliteRegistry store_{top_ + "/registry.sqlite"};
  std::unique_ptr<AutostartRegistry> registry_;
};

}  // namespace tallowin::platform::linux_host::test
