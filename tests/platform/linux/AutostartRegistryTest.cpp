#include "platform/linux/AutostartRegistry.h"

#include <sys/stat.h>

#include <set>

#include "platform/linux/AutostartNames.h"
#include "platform/linux/AutostartTest.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

RegistryResult Set(Registry& registry, const std::string& name, const std::string& data) {
  Key key;
  const RegistryResult result = registry.CreateKey(RegistryRoot::CurrentUser, kRuns + "Run", key);
  return key ? key->SetValue(name, RegistryValue::Text(data)) : result;
}

TEST_F(AutostartTest, StoredValuesTakeTheirPlaceAmongLiveOnes) {
  Write("/config/autostart/a.desktop", Entry("/a"));
  const Key key = UserRun();
  EXPECT_EQ(Commands(*key), Strings{"/a"});
  // As tallowin-reg does it: past the views.
  ASSERT_EQ(Set(store_, "Stored", "/stored"), registry::kSuccess);
  EXPECT_EQ(Commands(*key), (Strings{"/a", "/stored"}));
  {
    SqliteRegistry other(top_ + "/registry.sqlite");
    ASSERT_EQ(Set(other, "Stored", "/again"), registry::kSuccess);
  }
  EXPECT_EQ(Commands(*key), (Strings{"/a", "/again"}));
  Write("/config/autostart/b.desktop", Entry("/b"));
  ASSERT_EQ(Set(*registry_, "Other", "/other"), registry::kSuccess);
  EXPECT_EQ(key->DeleteValue("sTORED"), registry::kSuccess);
  EXPECT_EQ(Commands(*key).size(), 3U);

  Key stored;
  ASSERT_EQ(store_.OpenKey(RegistryRoot::CurrentUser, kRuns + "Run", stored), registry::kSuccess);
  EXPECT_EQ(All(*stored), (Rows{{"Other", "/other"}}));
  ASSERT_EQ(registry_->OpenKey(RegistryRoot::CurrentUser, kRuns + "RunOnce", stored),
            registry::kNotFound);
  ASSERT_EQ(registry_->OpenKey(RegistryRoot::Users, ".default\\" + kRuns + "rUN", stored),
            registry::kSuccess);
  EXPECT_EQ(All(*stored).size(), 3U);
}

TEST_F(AutostartTest, LongNamesAndCommandsEndNoEnumeration) {
  const std::string long1 = std::string(230, 'n') + "1";
  const std::string long2 = std::string(230, 'n') + "2";
  const std::string command = "/" + std::string(500, 'c');
  Write("/config/autostart/" + long1 + ".desktop", Entry(command));
  Write("/config/autostart/" + long2 + ".desktop", Entry("/other"));
  Write("/config/autostart/File.desktop", Entry("/upper"));
  Write("/config/autostart/file.desktop", Entry("/lower"));
  ASSERT_EQ(Set(store_, std::string(300, 's'), std::string(300, 'd')), registry::kSuccess);
  const Key key = UserRun();
  const Rows rows = All(*key);
  ASSERT_EQ(rows.size(), 5U);
  std::set<std::string> names;
  for (const auto& [name, data] : rows) {
    EXPECT_LE(name.size(), kEnumerableBytes);
    EXPECT_LE(data.size(), kEnumerableBytes);
    EXPECT_TRUE(names.insert(CaseFolded(name)).second) << name;
    RegistryValue whole;
    EXPECT_EQ(key->QueryValue(name, whole), registry::kSuccess);
    if (data.starts_with("/c")) {
      EXPECT_EQ(whole.data, command);
    }
  }
  for (const auto& row : rows) EXPECT_EQ(key->DeleteValue(row.first), registry::kSuccess);
  EXPECT_EQ(Commands(*key), Strings{});
}

TEST_F(AutostartTest, AGoneEntryIsNotTakenForASimilarOne) {
  const std::string folder = top_ + "/config/autostart/";
  Write("/config/autostart/Tool.desktop", Entry("/upper"));
  Write("/config/autostart/tool.desktop", Entry("/lower"));
  const Key key = UserRun();
  const Rows rows = All(*key);
  ASSERT_EQ(rows.size(), 2U);
  fs::remove(folder + "Tool.desktop");
  RegistryValue value;
  EXPECT_EQ(key->QueryValue(rows[0].first, value), registry::kNotFound);
  EXPECT_EQ(key->DeleteValue(rows[0].first), registry::kNotFound);
  EXPECT_EQ(Commands(*key), Strings{"/lower"});
  EXPECT_EQ(Copies(), Strings{});
}

TEST_F(AutostartTest, UsersEntryHidesTheSystemsOne) {
  Write("/etc/xdg/autostart/a.desktop", Entry("/system"));
  const Key user = UserRun();
  const Key machine = MachineRun();
  EXPECT_EQ(Commands(*machine), Strings{"/system"});
  Write("/config/autostart/a.desktop", Entry("/user", "Hidden=true\n"));
  EXPECT_EQ(Commands(*machine), Strings{});
  EXPECT_EQ(Commands(*user), Strings{});
  Write("/config/autostart/a.desktop", Entry("/user"));
  EXPECT_EQ(Commands(*machine), Strings{});
  EXPECT_EQ(Commands(*user), Strings{"/user"});
  EXPECT_EQ(user->DeleteValue(All(*user)[0].first), registry::kSuccess);
  EXPECT_EQ(Commands(*machine), Strings{"/system"});
}

TEST_F(AutostartTest, UnitsWithAliasesDropInsAndMasks) {
  Write("/lib/systemd/system/real.service", "[Service]\nExecStart=/real --x\nExecStart=-/two\n");
  fs::create_symlink("real.service", top_ + "/lib/systemd/system/other.service");
  fs::create_symlink("/anywhere/other.service",
                     top_ + "/etc/systemd/system/multi-user.target.wants/other.service");
  fs::create_symlink(top_ + "/lib/systemd/system/real.service",
                     top_ + "/etc/systemd/system/dbus-real.service");
  const Key key = Services();
  EXPECT_EQ(Commands(*key), Strings{"/real --x; /two"});  // one unit, under whatever names
  fs::create_directories(top_ + "/etc/systemd/system/real.service.d");
  Write("/etc/systemd/system/real.service.d/1.conf", "[Service]\nExecStart=\nExecStart=@/in x y\n");
  EXPECT_EQ(Commands(*key), Strings{"/in y"});

  Write("/lib/systemd/system/t.timer", "[Timer]\nUnit=real.service\n");
  Write("/lib/systemd/system/per@.service", "[Service]\nExecStart=/per %i %p %%\n");
  fs::create_symlink("/x", top_ + "/etc/systemd/system/multi-user.target.wants/t.timer");
  fs::create_symlink("/x", top_ + "/etc/systemd/system/multi-user.target.wants/per@a.service");
  fs::create_symlink("/x", top_ + "/etc/systemd/system/multi-user.target.wants/missing.service");
  const Strings commands = Commands(*key);
  EXPECT_EQ(std::set<std::string>(commands.begin(), commands.end()),
            (std::set<std::string>{"/in y", "/per a per %"}));
  EXPECT_EQ(commands.size(), 3U);

  fs::create_symlink("/dev/null", top_ + "/etc/systemd/system/real.service");
  fs::create_symlink("/dev/null", top_ + "/etc/systemd/system/per@.service");
  EXPECT_EQ(Commands(*key), Strings{""});  // the timer, which now has nothing to start
  fs::create_symlink("p.service", top_ + "/etc/systemd/system/q.service");
  fs::create_symlink("q.service", top_ + "/etc/systemd/system/p.service");
  EXPECT_EQ(Commands(*key), Strings{""});
}

TEST_F(AutostartTest, UnitsThatHideBehindNamesOfOthers) {
  const std::string units = "/config/systemd/user/";
  const std::string wants = top_ + units + "default.target.wants/";
  Write(units + "pulse.service", "[Service]\nExecStart=/pulse\n");
  fs::create_symlink("/dev/null", top_ + units + "masked.service");
  fs::create_symlink("../pulse.service", wants + "pulse.service");
  const Key key = UserRun();
  EXPECT_EQ(Commands(*key), Strings{"/pulse"});
  // Linked from elsewhere, under the name of an enabled or a masked unit there.
  for (const std::string& behind : Strings{"pulse", "masked"}) {
    Write("/outside/" + behind + ".service", "[Service]\nExecStart=/evil-" + behind + "\n");
    const std::string name = "evil-" + behind + ".service";
    fs::create_symlink(top_ + "/outside/" + behind + ".service", top_ + units + name);
    fs::create_symlink("../" + name, wants + name);
    EXPECT_EQ(Commands(*key).back(), "/evil-" + behind);
  }
  Write(units + "tmpl@.service", "[Service]\nExecStart=/tmpl %i\n");
  fs::create_symlink("../tmpl@.service", wants + "tmpl@.service");
  EXPECT_EQ(Commands(*key).back(), "/tmpl default");
  // A more important folder takes a mask back.
  fs::create_symlink("../masked.service", wants + "masked.service");
  EXPECT_EQ(Commands(*key).size(), 4U);
  fs::create_directory(top_ + "/config/systemd/user.control");
  Write("/config/systemd/user.control/masked.service", "[Service]\nExecStart=/unmasked\n");
  EXPECT_EQ(Commands(*key).back(), "/unmasked");
}

/// While it lives, this process is somebody who may look at everything and change nothing.
class WithoutRights {
 public:
  explicit WithoutRights(const std::string& top) : top_(top) {
    Change(S_IRUSR | S_IXUSR | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH);
    if (own_ == 0) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  ~WithoutRights() {
    EXPECT_EQ(seteuid(own_), 0);
    Change(S_IRWXU);
  }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;

 private:
  void Change(mode_t mode) {
    (void)chmod(top_.c_str(), mode);
    for (const auto& entry : fs::recursive_directory_iterator(top_)) {
      if (entry.is_directory() && !entry.is_symlink()) (void)chmod(entry.path().c_str(), mode);
    }
  }

  std::string top_;
  uid_t own_ = geteuid();
};

TEST_F(AutostartTest, OwnWaysOfStartingAreNoFinding) {
  const std::string own = top_ + "/bin/tallowin";
  const std::string wants = "/config/systemd/user/default.target.wants/tallowin-console.service";
  const std::string unit = "[Service]\nExecStart=" + own + "-console\n";
  Write("/config/autostart/tallowin.desktop", Entry(own));
  std::filesystem::create_directories(top_ + "/lib/systemd/user");
  Write("/lib/systemd/user/tallowin-console.service", unit);
  std::filesystem::create_symlink(top_ + "/lib/systemd/user/tallowin-console.service",
                                  top_ + wants);
  const auto key = UserRun();
  EXPECT_EQ(Commands(*key), std::vector<std::string>{});

  Write("/config/autostart/tallowin.desktop", Entry("env LD_PRELOAD=/x.so " + own));
  std::filesystem::remove(top_ + wants);
  Write("/outside/other.service", unit + "Environment=LD_PRELOAD=/x.so\n");
  std::filesystem::create_symlink(top_ + "/outside/other.service", top_ + wants);
  EXPECT_EQ(Commands(*key).size(), 2U);

  // Behind a link that leads to the package's unit, by another unit of that name or by a drop-in.
  std::filesystem::remove(top_ + "/config/autostart/tallowin.desktop");
  std::filesystem::remove(top_ + wants);
  std::filesystem::create_symlink(top_ + "/lib/systemd/user/tallowin-console.service",
                                  top_ + wants);
  EXPECT_EQ(Commands(*key), std::vector<std::string>{});
  const std::string mine = "/config/systemd/user/tallowin-console.service";
  Write(mine, unit + "ExecStartPre=/evil\n");
  EXPECT_EQ(Commands(*key).size(), 1U);
  std::filesystem::remove(top_ + mine);
  std::filesystem::create_directories(top_ + mine + ".d");
  Write(mine + ".d/a.conf", "[Service]\nExecStartPre=/evil\n");
  EXPECT_EQ(Commands(*key).size(), 1U);
}

TEST_F(AutostartTest, WhatTheUserMayNotChangeStays) {
  Write("/etc/xdg/autostart/a.desktop", Entry("/a"));
  Write("/etc/cron.d/a", "@reboot root /cron\n");
  Write("/lib/systemd/system/a.service", "[Service]\nExecStart=/unit\n");
  fs::create_symlink("/x/a.service",
                     top_ + "/etc/systemd/system/multi-user.target.wants/a.service");
  fs::create_symlink(top_ + "/lib/systemd/system/a.service",
                     top_ + "/etc/systemd/system/b.service");
  const Key machine = MachineRun();
  const Key services = Services();
  for (RegistryKey* key : {machine.get(), services.get()}) {
    const Rows before = All(*key);
    EXPECT_EQ(before.size(), key == machine.get() ? 1U : 2U);
    {
      const WithoutRights nobody(top_);
      for (const auto& row : before) {
        EXPECT_EQ(key->DeleteValue(row.first), registry::kAccessDenied) << row.first;
      }
    }
    EXPECT_EQ(All(*key), before);
  }
  EXPECT_EQ(Copies(), Strings{});
}

TEST_F(AutostartTest, HostileEntries) {
  const std::string folder = "/config/autostart/";
  ASSERT_EQ(mkfifo((top_ + folder + "fifo.desktop").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((top_ + "/lib/systemd/system/fifo.service").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((top_ + "/etc/cron.d/fifo").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", top_ + folder + "zero.desktop");
  fs::create_symlink("loop.desktop", top_ + folder + "loop.desktop");
  fs::create_directory(top_ + folder + "folder.desktop");
  Write(folder + "huge.desktop", Entry("/huge", std::string(3U << 20U, 'x')));
  Write(folder + "late.desktop", "[Desktop Entry]\n#" + std::string(2U << 20U, 'x') + "\nExec=/l");
  Write(folder + "a\nValue Name: innocent\xFF.desktop", Entry(std::string("/n\0ul\x1B[2J", 9)));
  Write("/etc/cron.d/long", std::string(5U << 20U, 'x'));
  fs::create_symlink("/x", top_ + "/etc/systemd/system/multi-user.target.wants/fifo.service");
  for (int i = 0; i < 3000; ++i) {
    Write(folder + std::to_string(i) + ".desktop", Entry("/many" + std::to_string(i)));
  }
  const Key key = UserRun();
  const Rows rows = All(*key);
  EXPECT_EQ(rows.size(), 3003U);
  bool seen = false;
  for (const auto& [name, data] : rows) {
    for (const char c : name + data) ASSERT_GE(static_cast<unsigned char>(c), 0x20) << name;
    seen = seen || (name.ends_with("/a\\x0AValue Name: innocent\\xFF.desktop") &&
                    data == "/n\\x00ul\\x1B[2J");
  }
  EXPECT_TRUE(seen);
  EXPECT_EQ(Commands(*Services()), Strings{""});
}

TEST_F(AutostartTest, FoldersThatComeGoAndAreReplaced) {
  fs::remove_all(top_ + "/config");
  const Key key = UserRun();
  EXPECT_EQ(Commands(*key), Strings{});
  fs::create_directory(top_ + "/config");
  EXPECT_EQ(Commands(*key), Strings{});
  fs::create_directories(top_ + "/config/autostart");
  Write("/config/autostart/a.desktop", Entry("/a"));
  EXPECT_EQ(Commands(*key), Strings{"/a"});
  fs::create_directory(top_ + "/other");
  Write("/other/b.desktop", Entry("/b"));
  fs::rename(top_ + "/config/autostart", top_ + "/config/old");
  fs::rename(top_ + "/other", top_ + "/config/autostart");
  EXPECT_EQ(Commands(*key), Strings{"/b"});
  Write("/config/autostart/c.desktop", Entry("/c"));
  EXPECT_EQ(Commands(*key), (Strings{"/b", "/c"}));
}

TEST_F(AutostartTest, LostEventsLeadToALook) {
  const std::string file = top_ + "/config/autostart/a.desktop";
  Write("/config/autostart/a.desktop", Entry("/a"));
  const Key key = UserRun();
  EXPECT_EQ(Commands(*key), Strings{"/a"});
  // More than the kernel's queue holds; alternating, since equal ones in a row count as one.
  for (int i = 0; i < 20000; ++i) {
    (void)chmod(file.c_str(), 0600);
    (void)chmod((top_ + "/config/autostart").c_str(), 0700);
  }
  Write("/config/autostart/b.desktop", Entry("/b"));
  EXPECT_EQ(Commands(*key), (Strings{"/a", "/b"}));
}

TEST_F(AutostartTest, ShortageIsNoChange) {
  Write("/config/autostart/a.desktop", Entry("/a"));
  const Key key = UserRun();
  EXPECT_EQ(Commands(*key), Strings{"/a"});
  Write("/config/autostart/b.desktop", Entry("/b"));
  {
    const NoDescriptors shortage;
    EXPECT_EQ(Commands(*key), Strings{"/a"});
  }
  EXPECT_EQ(Commands(*key), (Strings{"/a", "/b"}));
}

TEST_F(AutostartTest, OneTickSeesOneState) {
  Open(std::chrono::hours(1));
  const Key key = UserRun();
  EXPECT_EQ(Commands(*key), Strings{});
  Write("/config/autostart/a.desktop", Entry("/a"));
  EXPECT_EQ(Commands(*key), Strings{});
  ASSERT_EQ(Set(*registry_, "Own", "/own"), registry::kSuccess);
  EXPECT_EQ(Commands(*key).size(), 2U);
  Open(std::chrono::hours(1), std::chrono::nanoseconds(0));
  Write("/config/autostart/b.desktop", Entry("/b"));
  EXPECT_EQ(Commands(*UserRun()).size(), 3U);
  fs::remove(top_ + "/config/autostart/b.desktop");
  EXPECT_EQ(Commands(*UserRun()).size(), 2U) << "who reads without a pause is not kept for ever";
}

TEST_F(AutostartTest, AnEnumerationGoesThroughTheStateThatItBeganWith) {
  Write("/config/autostart/a.desktop", Entry("/a"));
  Open(std::chrono::hours(1));
  const Key key = UserRun();
  ASSERT_EQ(Set(*registry_, "Own", "/own"), registry::kSuccess);
  std::string name;
  RegistryValue value;
  EXPECT_EQ(key->EnumValue(0, name, value), registry::kSuccess);
  EXPECT_EQ(key->DeleteValue("Own"), registry::kSuccess);
  EXPECT_EQ(key->EnumValue(1, name, value), registry::kSuccess);
  EXPECT_EQ(Commands(*key), Strings{"/a"});
}

}  // namespace
}  // namespace tallowin::platform::linux_host::test
