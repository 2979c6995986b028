// What each kind of entry does to its view, in each of the ways in which files come and go.

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <functional>
#include <iterator>

#include "platform/linux/AutostartTest.h"
#include "platform/linux/CrontabProgram.h"

namespace tallowin::platform::linux_host::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

/// An entry is a file or a link of its own.
struct Kind {
  std::string title;
  RegistryRoot root;
  std::string key;
  std::string folder, beginning, ending;
  std::string units = {};       // where the unit file of a link lies
  std::string unitEnding = {};  // of its name
};

const std::vector<Kind> kKinds = {
    {"user's XDG entry", RegistryRoot::CurrentUser, "Run", "/config/autostart/", "", ".desktop"},
    {"system's XDG entry", RegistryRoot::LocalMachine, "Run", "/etc/xdg/autostart/", "",
     ".desktop"},
    {"user unit", RegistryRoot::CurrentUser, "Run", "/config/systemd/user/default.target.wants/",
     "", ".service", "/config/systemd/user/", ".service"},
    {"system unit", RegistryRoot::LocalMachine, "RunServices",
     "/etc/systemd/system/multi-user.target.wants/", "", ".service", "/lib/systemd/system/",
     ".service"},
    {"required unit", RegistryRoot::LocalMachine, "RunServices",
     "/etc/systemd/system/multi-user.target.requires/", "", ".service", "/lib/systemd/system/",
     ".service"},
    {"instance of a template", RegistryRoot::LocalMachine, "RunServices",
     "/etc/systemd/system/multi-user.target.wants/", "", "@one.service", "/lib/systemd/system/",
     "@.service"},
    {"alias", RegistryRoot::LocalMachine, "RunServices", "/etc/systemd/system/", "dbus-",
     ".service", "/lib/systemd/system/", ".service"},
    {"file of cron", RegistryRoot::LocalMachine, "RunServices", "/etc/cron.d/", "", ""},
};

class AutostartChangesTest : public AutostartTest, public testing::WithParamInterface<Kind> {
 protected:
  [[nodiscard]] std::string PathOf(const std::string& name) const {
    return top_ + GetParam().folder + GetParam().beginning + name + GetParam().ending;
  }

  /// The command of an entry that is a link stands in its unit.
  void Make(const std::string& path, const std::string& name, const std::string& command) {
    const Kind& kind = GetParam();
    if (kind.units.empty()) {
      WriteFile(path, kind.ending.empty() ? "@reboot root " + command + "\n" : Entry(command));
      return;
    }
    const std::string unit = top_ + kind.units + name + kind.unitEnding;
    WriteFile(unit, "[Service]\nExecStart=" + command + "\n");
    if (!fs::is_symlink(path)) fs::create_symlink(unit, path);
  }

  Strings Seen() {
    if (!key_) key_ = OpenRun(GetParam().root, GetParam().key);
    return Commands(*key_);
  }

  Key key_;
};

INSTANTIATE_TEST_SUITE_P(Kinds, AutostartChangesTest, testing::ValuesIn(kKinds),
                         [](const auto& each) {
                           std::string name;
                           for (const char c : each.param.title) {
                             if (std::isalpha(static_cast<unsigned char>(c)) != 0) name += c;
                           }
                           return name;
                         });

TEST_P(AutostartChangesTest, NewestIsLast) {
  // Made first, and put into place later on.
  Make(top_ + "/outside/moved", "d-moved", "/d-moved");
  Make(top_ + "/outside/linked", "c-linked", "/c-linked");
  Make(PathOf("m-first"), "m-first", "/m-first");
  Make(PathOf("n-second"), "n-second", "/n-second");
  EXPECT_EQ(Seen().size(), 2U);
  Make(PathOf("b-new"), "b-new", "/b-new");
  EXPECT_EQ(Seen().back(), "/b-new");
  fs::rename(top_ + "/outside/moved", PathOf("d-moved"));
  EXPECT_EQ(Seen().back(), "/d-moved");
  ASSERT_EQ(link((top_ + "/outside/linked").c_str(), PathOf("c-linked").c_str()), 0);
  EXPECT_EQ(Seen().back(), "/c-linked");
  // A new file whose times are old, together with one whose times are new.
  Make(PathOf("a-late"), "a-late", "/a-late");
  const timespec old[2] = {{.tv_sec = 1000, .tv_nsec = 0}, {.tv_sec = 1000, .tv_nsec = 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, PathOf("a-late").c_str(), old, AT_SYMLINK_NOFOLLOW), 0);
  ASSERT_EQ(utimensat(AT_FDCWD, PathOf("m-first").c_str(), nullptr, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_EQ(Seen(),
            (Strings{"/m-first", "/n-second", "/b-new", "/d-moved", "/c-linked", "/a-late"}));
}

TEST_P(AutostartChangesTest, ChangedReplacedAndRemoved) {
  Make(PathOf("a"), "a", "/a");
  Make(PathOf("b"), "b", "/b");
  EXPECT_EQ(Seen().size(), 2U);
  Make(PathOf("a"), "a", "/a-changed");
  EXPECT_EQ(Seen(), (Strings{"/b", "/a-changed"}));
  Make(top_ + "/outside/next", "b", "/b-replaced");
  fs::rename(top_ + "/outside/next", PathOf("b"));
  EXPECT_EQ(Seen(), (Strings{"/a-changed", "/b-replaced"}));
  // What changes together with what is new stays before it. A changed line of cron is a new one.
  const bool table = GetParam().ending.empty();
  if (!table) Make(PathOf("c"), "c", "/c");
  Make(PathOf("a"), "a", "/a-again");
  if (table) Make(PathOf("c"), "c", "/c");
  EXPECT_EQ(Seen(), (Strings{"/b-replaced", "/a-again", "/c"}));
  fs::remove(PathOf("a"));
  EXPECT_EQ(Seen(), (Strings{"/b-replaced", "/c"}));
  Make(PathOf("x"), "x", "/x");
  Make(PathOf("y"), "y", "/y");
  EXPECT_EQ(Seen().size(), 4U);
}

TEST_P(AutostartChangesTest, DeletingKeepsACopyThatWorksWhenPutBack) {
  Make(PathOf("a"), "a", "/a");
  Make(PathOf("b"), "b", "/b");
  const Rows before = (Seen(), All(*key_));
  ASSERT_EQ(before.size(), 2U);
  EXPECT_EQ(key_->DeleteValue(before[0].first), registry::kSuccess);
  EXPECT_EQ(Seen(), Strings{before[1].second});
  EXPECT_EQ(key_->DeleteValue(before[0].first), registry::kNotFound);

  const Strings copies = Copies();
  ASSERT_EQ(copies.size(), 1U);
  const std::string original = PathOf(before[0].second.substr(1));
  EXPECT_TRUE(copies[0].ends_with(original)) << copies[0];
  // cron's file stays, without its line.
  fs::remove(original);
  fs::rename(copies[0], original);
  EXPECT_EQ(Seen(), (Strings{before[1].second, before[0].second}));
}

TEST_F(AutostartTest, LinesOfATableComeAndGo) {
  Write("/etc/crontab", "# @reboot root /no\n@reboot root /a\n@daily root /no\n");
  const Key key = Services();
  EXPECT_EQ(Commands(*key), Strings{"/a"});
  // A line above does not make the others new, and neither does the whole file's replacement.
  Write("/outside/crontab", "@reboot root /new\n\n@reboot root /a\n");
  fs::rename(top_ + "/outside/crontab", top_ + "/etc/crontab");
  EXPECT_EQ(Commands(*key), (Strings{"/a", "/new"}));
  Write("/etc/crontab", "@reboot root /new\n@reboot me /a\n@reboot root /a\n@reboot root /a\n");
  const Rows rows = All(*key);
  EXPECT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows[0].second, "/a");
  EXPECT_EQ(key->DeleteValue(rows[0].first), registry::kSuccess);
  EXPECT_EQ(FileText(top_ + "/etc/crontab"), "@reboot root /new\n@reboot me /a\n@reboot root /a\n");
  ASSERT_EQ(Copies().size(), 1U);
  EXPECT_EQ(FileText(Copies()[0]),
            "@reboot root /new\n@reboot me /a\n@reboot root /a\n@reboot root /a\n");
}

void UseCrontab(const std::function<std::string(const std::string&)>& run, RegistryKey& key,
                const std::function<Strings()>& commands) {
  EXPECT_EQ(commands(), Strings{});
  EXPECT_EQ(run("printf '%s\\n' '@reboot /a \"x y\"' '5 0 * * * /no' | $CRONTAB -"), "");
  EXPECT_EQ(commands(), Strings{"/a \"x y\""});
  EXPECT_EQ(run("printf '%s\\n' '@reboot /b%input' '@reboot /a \"x y\"' | $CRONTAB -"), "");
  EXPECT_EQ(commands(), (Strings{"/a \"x y\"", "/b"}));
  std::string name;
  RegistryValue value;
  EXPECT_EQ(key.EnumValue(1, name, value), registry::kSuccess);
  EXPECT_EQ(key.DeleteValue(name), registry::kSuccess);
  EXPECT_EQ(run("$CRONTAB -l"), "@reboot /a \"x y\"\n");
}

std::string RunShell(const std::vector<std::string>& crontab, const std::string& line) {
  std::string command = "CRONTAB='";
  for (const std::string& word : crontab) command += word + " ";
  const std::unique_ptr<FILE, int (*)(FILE*)> shell(popen((command + "'; " + line).c_str(), "r"),
                                                    pclose);
  std::string output;
  for (int c = 0; (c = std::fgetc(shell.get())) != EOF;) output += static_cast<char>(c);
  return output;
}

TEST_F(AutostartTest, UsersTableOfCron) {
  const Key key = Services();
  UseCrontab([&](const std::string& line) { return RunShell(crontab_, line); }, *key,
             [&] { return Commands(*key); });
  ASSERT_EQ(Copies().size(), 1U);
  EXPECT_EQ(FileText(Copies()[0]), "@reboot /b%input\n@reboot /a \"x y\"\n");

  Write("/bin/crontab", "#!/bin/sh\n[ \"$1\" = -l ] && exec cat " + top_ + "/tables/me\nexit 1\n");
  EXPECT_EQ(key->DeleteValue(All(*key)[0].first), registry::kAccessDenied);
  EXPECT_EQ(Commands(*key), Strings{"/a \"x y\""});
}

TEST(CrontabProgram, LeavesNothingOpenWhereThereIsNone) {
  const auto open = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = open();
  std::string table;
  EXPECT_FALSE(CrontabProgram({"no-such-program"}).List(table));
  EXPECT_FALSE(CrontabProgram({"no-such-program"}).Install(table));
  EXPECT_EQ(open(), before);
}

TEST_F(AutostartTest, UsersTableByTheRealProgram) {
  // With a file system of its own, in which the tables of this machine are out of reach.
  const std::string wrapper = top_ + "/bin/real";
  WriteFile(wrapper,
            "#!/bin/sh\nexec unshare -m sh -c 'mount --bind \"$0\" /var/spool/cron/crontabs && "
            "exec crontab \"$@\"' " +
                top_ + "/tables \"$@\"\n");
  ASSERT_EQ(chmod(wrapper.c_str(), 0700), 0);
  crontab_ = {wrapper};
  if (RunShell(crontab_, "(echo '# x' | $CRONTAB - && $CRONTAB -l && $CRONTAB -r) 2>&1") !=
      "# x\n") {
    GTEST_SKIP() << "needs crontab and the right to mount";
  }
  const Key key = Services();
  UseCrontab([&](const std::string& line) { return RunShell(crontab_, line); }, *key,
             [&] { return Commands(*key); });
}

}  // namespace
}  // namespace tallowin::platform::linux_host::test
