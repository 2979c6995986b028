#include "platform/linux/SqliteRegistry.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <thread>

#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;
using Key = std::unique_ptr<RegistryKey>;

constexpr auto kUser = RegistryRoot::CurrentUser;

class SqliteRegistryTest : public ::testing::Test {
 protected:
  SqliteRegistry Open() {
    return SqliteRegistry(path_, [this](const std::string& name) { setAside_.push_back(name); });
  }

  static RegistryResult Set(Registry& registry, std::string_view path, std::string_view name,
                            const std::string& text) {
    Key key;
    const RegistryResult result = registry.CreateKey(kUser, path, key);
    return key ? key->SetValue(name, RegistryValue::Text(text)) : result;
  }
  /// Tries again where another process was in the way for longer than the registry waits.
  static RegistryResult SetInTheEnd(Registry& registry, std::string_view path,
                                    std::string_view name, const std::string& text) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    RegistryResult result = registry::kWriteFault;
    while (result == registry::kWriteFault && std::chrono::steady_clock::now() < limit) {
      result = Set(registry, path, name, text);
    }
    return result;
  }
  static std::string Get(Registry& registry, std::string_view path, std::string_view name) {
    Key key;
    RegistryValue value;
    if (registry.OpenKey(kUser, path, key) != registry::kSuccess) return "no key";
    return key->QueryValue(name, value) == registry::kSuccess ? value.data : "no value";
  }
  static std::vector<std::string> ValueNames(RegistryKey& key) {
    std::vector<std::string> names;
    std::string name;
    RegistryValue value;
    for (std::uint32_t i = 0; key.EnumValue(i, name, value) == registry::kSuccess; ++i) {
      names.push_back(name);
    }
    return names;
  }

  void Overwrite(std::size_t at, const std::string& bytes) {
    std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(at));
    file << bytes;
  }

  test::TemporaryHome home_;
  fs::path folder_ = home_.Path();
  fs::path path_ = folder_ / "tallowin" / "registry.sqlite";
  std::vector<std::string> setAside_;
};

template <typename Work>
pid_t Spawn(Work work) {
  const pid_t child = fork();
  if (child == 0) _exit(work());
  return child;
}

int WaitFor(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string Noise(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

TEST_F(SqliteRegistryTest, IsEmptyUntilTheFirstWriteAndThenForTheOwnerAlone) {
  SqliteRegistry reader = Open();
  EXPECT_EQ(Get(reader, "Software", "x"), "no key");
  EXPECT_FALSE(fs::exists(folder_ / "tallowin"));

  SqliteRegistry writer = Open();
  ASSERT_EQ(Set(writer, "Software\\A", "x", "1"), registry::kSuccess);
  EXPECT_EQ(Get(reader, "Software\\A", "x"), "1");  // it was opened before there was a file
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0600));
  EXPECT_EQ(fs::status(path_.parent_path()).permissions(), fs::perms(0700));
}

TEST_F(SqliteRegistryTest, FindsNamesInAnyCaseAndKeepsTheFirst) {
  SqliteRegistry registry = Open();
  ASSERT_EQ(Set(registry, "Software\\\xC3\x84pfel", "Gr\xC3\xB6\xC3\x9F", "1"), registry::kSuccess);
  ASSERT_EQ(Set(registry, "SOFTWARE\\\xC3\xA4PFEL", "GR\xC3\x96\xC3\x9F", "2"), registry::kSuccess);
  Key key;
  ASSERT_EQ(registry.OpenKey(kUser, "software\\\xC3\xA4pfel", key), registry::kSuccess);
  EXPECT_EQ(ValueNames(*key), std::vector<std::string>{"Gr\xC3\xB6\xC3\x9F"});
  EXPECT_EQ(Get(registry, "software\\\xC3\xA4pfel", "gr\xC3\xB6\xC3\x9F"), "2");

  ASSERT_EQ(Set(registry, "k\xFF\\A", "x", "ff"), registry::kSuccess);
  ASSERT_EQ(Set(registry, "k\xFE\\A", "x", "fe"), registry::kSuccess);
  EXPECT_EQ(Get(registry, "K\xFF\\a", "X"), "ff");
}

TEST_F(SqliteRegistryTest, EnumeratesInTheOrderOfFirstWriting) {
  SqliteRegistry registry = Open();
  for (const char* name : {"z", "m", "a", "M"}) {
    ASSERT_EQ(Set(registry, "K", name, name), registry::kSuccess);
    ASSERT_EQ(Set(registry, std::string("K\\") + name, "", ""), registry::kSuccess);
  }
  Key key;
  ASSERT_EQ(registry.OpenKey(kUser, "K", key), registry::kSuccess);
  EXPECT_EQ(ValueNames(*key), (std::vector<std::string>{"z", "m", "a"}));
  std::string name;
  RegistryValue value;
  EXPECT_EQ(key->EnumValue(3, name, value), registry::kNoMoreItems);
  EXPECT_EQ(key->EnumKey(2, name), registry::kSuccess);
  EXPECT_EQ(name, "a");

  // Rows move up behind a deleted one, also for an enumeration that is under way.
  EXPECT_EQ(key->EnumValue(0, name, value), registry::kSuccess);
  EXPECT_EQ(key->DeleteValue("Z"), registry::kSuccess);
  EXPECT_EQ(key->EnumValue(1, name, value), registry::kSuccess);
  EXPECT_EQ(name, "a");
  EXPECT_EQ(key->DeleteValue("z"), registry::kNotFound);
}

TEST_F(SqliteRegistryTest, KnowsTheDefaultUserAsTheCurrentOne) {
  SqliteRegistry registry = Open();
  ASSERT_EQ(Set(registry, "AppEvents", "x", "1"), registry::kSuccess);
  Key key;
  RegistryValue value;
  ASSERT_EQ(registry.OpenKey(RegistryRoot::Users, ".Default\\AppEvents", key), registry::kSuccess);
  EXPECT_EQ(key->QueryValue("x", value), registry::kSuccess);
  EXPECT_EQ(registry.OpenKey(RegistryRoot::Users, "AppEvents", key), registry::kNotFound);
  EXPECT_EQ(registry.OpenKey(RegistryRoot::LocalMachine, "AppEvents", key), registry::kNotFound);
  EXPECT_EQ(registry.OpenKey(RegistryRoot::None, "", key), registry::kNotFound);
}

TEST_F(SqliteRegistryTest, DeletesATreeAndLeavesItsNeighbours) {
  SqliteRegistry registry = Open();
  for (const char* path : {"A", "A\\B\\C", "A B", "A]", "AB\\A"}) {
    ASSERT_EQ(Set(registry, path, "x", path), registry::kSuccess);
  }
  Key below;
  ASSERT_EQ(registry.OpenKey(kUser, "A\\B\\C", below), registry::kSuccess);
  EXPECT_EQ(registry.DeleteTree(kUser, "a"), registry::kSuccess);
  EXPECT_EQ(registry.DeleteTree(kUser, "a"), registry::kNotFound);
  EXPECT_EQ(registry.DeleteTree(RegistryRoot::Users, ".DEFAULT"), registry::kAccessDenied);
  for (const char* path : {"A B", "A]", "AB\\A"}) EXPECT_EQ(Get(registry, path, "x"), path);

  // The handle stays dead when a key of that name comes back.
  ASSERT_EQ(Set(registry, "A\\B\\C", "x", "new"), registry::kSuccess);
  std::string name;
  RegistryValue value;
  EXPECT_EQ(below->QueryValue("x", value), registry::kNotFound);
  EXPECT_EQ(below->SetValue("x", value), registry::kNotFound);
  EXPECT_EQ(below->EnumValue(0, name, value), registry::kNotFound);
  EXPECT_EQ(below->EnumKey(0, name), registry::kNotFound);
}

TEST_F(SqliteRegistryTest, RefusesNamesThatCannotBeExported) {
  SqliteRegistry registry = Open();
  EXPECT_EQ(Set(registry, "a\nb", "x", ""), registry::kInvalidParameter);
  EXPECT_EQ(Set(registry, "a", std::string("x\0y", 3), ""), registry::kInvalidParameter);
  std::string deep;
  for (int i = 0; i < 600; ++i) deep += "k\\";
  EXPECT_EQ(Set(registry, deep, "x", ""), registry::kInvalidParameter);
  EXPECT_EQ(Set(registry, "a", "x", std::string(20'000'000, 'x')), registry::kWriteFault);
  EXPECT_EQ(Set(registry, "a", "x", std::string("\0\xFF", 2)), registry::kSuccess);
  EXPECT_EQ(Get(registry, "a", "x"), std::string("\0\xFF", 2));
}

TEST_F(SqliteRegistryTest, SetsADamagedFileAsideAndBeginsANewOne) {
  const auto fill = [&] {
    SqliteRegistry registry = Open();
    for (int i = 0; i < 200; ++i) {
      ASSERT_EQ(Set(registry, "K" + std::to_string(i), "x", std::string(100, 'x')),
                registry::kSuccess);
    }
  };
  const std::vector<std::function<void()>> damages{
      [&] { fs::resize_file(path_, 5000); },
      [&] { fs::resize_file(path_, 50); },
      [&] { Overwrite(0, Noise(fs::file_size(path_), 1)); },
      [&] { Overwrite(4096, Noise(8192, 2)); },
      [&] { std::ofstream(path_) << "this is no database at all"; },
  };
  for (const auto& damage : damages) {
    fill();
    damage();
    const std::string bytes = test::FileText(path_);
    const std::size_t reports = setAside_.size();
    SqliteRegistry registry = Open();
    ASSERT_EQ(setAside_.size(), reports + 1);
    EXPECT_EQ(Get(registry, "K1", "x"), "no key");
    EXPECT_EQ(Set(registry, "K1", "x", "new"), registry::kSuccess);
    EXPECT_EQ(test::FileText(setAside_.back()), bytes);
  }
  EXPECT_EQ(std::set<std::string>(setAside_.begin(), setAside_.end()).size(), damages.size());
}

TEST_F(SqliteRegistryTest, TakesAnEmptyFileAsAnEmptyStoreUnlessItsLogIsLeft) {
  fs::create_directories(path_.parent_path());
  std::ofstream(path_).close();
  SqliteRegistry registry = Open();
  EXPECT_EQ(Set(registry, "A", "x", "1"), registry::kSuccess);
  EXPECT_TRUE(setAside_.empty());

  const fs::path other = folder_ / "other.sqlite";
  std::ofstream(other).close();
  fs::copy(path_.string() + "-wal", other.string() + "-wal");
  SqliteRegistry(other, [this](const std::string& name) { setAside_.push_back(name); });
  ASSERT_EQ(setAside_.size(), 1U);
  EXPECT_TRUE(fs::exists(setAside_[0] + "-wal"));
}

TEST_F(SqliteRegistryTest, SurvivesDamageThatComesWhileItIsOpen) {
  SqliteRegistry registry = Open();
  for (int i = 0; i < 500; ++i) {
    ASSERT_EQ(Set(registry, "K" + std::to_string(i), "x", std::string(500, 'x')),
              registry::kSuccess);
  }
  fs::resize_file(path_.string() + "-wal", 0);
  Overwrite(0, Noise(fs::file_size(path_), 3));
  for (int i = 0; i < 500; ++i) {
    static_cast<void>(Set(registry, "K" + std::to_string(i), "x", "y"));
    static_cast<void>(Get(registry, "K" + std::to_string(i), "x"));
  }
}

TEST_F(SqliteRegistryTest, SeesWhatOthersWriteHoweverOftenItHasReadTheOldValue) {
  SqliteRegistry registry = Open();
  SqliteRegistry other = Open();
  for (int i = 0; i < 30; ++i) {
    const std::string written = std::to_string(i);
    ASSERT_EQ(Set(other, "A", "x", written), registry::kSuccess);
    // From writes that follow at once up to files that have long been at rest.
    std::this_thread::sleep_for(std::chrono::milliseconds(1 + 2 * i));
    for (int reading = 0; reading < 20; ++reading) ASSERT_EQ(Get(registry, "A", "x"), written);
  }
}

TEST_F(SqliteRegistryTest, FollowsAFileThatWasReplaced) {
  SqliteRegistry registry = Open();
  ASSERT_EQ(Set(registry, "A", "x", "old"), registry::kSuccess);
  Key key;
  ASSERT_EQ(registry.OpenKey(kUser, "A", key), registry::kSuccess);
  for (const char* part : {"-wal", "-shm", ""}) {
    fs::rename(path_.string() + part, path_.string() + ".away" + part);
  }
  EXPECT_EQ(key->SetValue("x", RegistryValue::Text("lost")), registry::kNotFound);
  while (Get(registry, "A", "x") != "no key")
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_EQ(Set(registry, "A", "x", "new"), registry::kSuccess);
  key.reset();  // the last user of the old file leaves the new one's log alone
  EXPECT_EQ(Get(registry, "A", "x"), "new");
}

TEST_F(SqliteRegistryTest, TellsMissingRightsAndSetsNothingAside) {
  {
    SqliteRegistry registry = Open();
    ASSERT_EQ(Set(registry, "A", "x", "1"), registry::kSuccess);
  }
  // Rights mean nothing to root, so this goes to a process that is not.
  const auto without = [&](const fs::path& what, fs::perms rights) {
    const fs::perms before = fs::status(what).permissions();
    fs::permissions(what, rights);
    const int status = WaitFor(Spawn([&] {
      if (geteuid() == 0 && setuid(65534) != 0) return 100;
      SqliteRegistry registry = Open();
      const bool read = Get(registry, "A", "x") == "1";
      const bool refused = Set(registry, "A", "x", "2") == registry::kAccessDenied;
      return (read ? 1 : 0) + (refused ? 2 : 0) + (setAside_.empty() ? 4 : 0);
    }));
    fs::permissions(what, before);
    return status;
  };
  if (geteuid() == 0) {
    ASSERT_EQ(chown(folder_.c_str(), 65534, 65534), 0);
    ASSERT_EQ(chown(path_.parent_path().c_str(), 65534, 65534), 0);
    for (const auto& file : fs::directory_iterator(path_.parent_path())) {
      ASSERT_EQ(chown(file.path().c_str(), 65534, 65534), 0);
    }
  }
  EXPECT_EQ(without(path_, fs::perms::none), 2 + 4);
  EXPECT_EQ(without(path_, fs::perms::owner_read), 1 + 2 + 4);
  EXPECT_EQ(without(path_.parent_path(), fs::perms::owner_read | fs::perms::owner_exec) & 6, 6);
  fs::remove(path_);
  EXPECT_EQ(without(path_.parent_path(), fs::perms::owner_read | fs::perms::owner_exec), 2 + 4);
}

TEST_F(SqliteRegistryTest, LosesItsPatienceWithALockedStore) {
  SqliteRegistry registry = Open();
  ASSERT_EQ(Set(registry, "A", "x", "old"), registry::kSuccess);
  SqliteConnection other(std::make_shared<LockPatience>());
  ASSERT_EQ(other.Open(path_), 0);
  ASSERT_EQ(other.Execute("BEGIN IMMEDIATE"), 0);
  Key key;
  ASSERT_EQ(registry.OpenKey(kUser, "A", key), registry::kSuccess);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(key->SetValue("x", RegistryValue::Text("new")), registry::kWriteFault);
    EXPECT_EQ(Set(registry, "New", "x", "new"), registry::kWriteFault);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(Get(registry, "A", "x"), "old") << "reading goes on beside a writer";
  ASSERT_EQ(other.Execute("ROLLBACK"), 0);
  EXPECT_EQ(SetInTheEnd(registry, "A", "x", "new"), registry::kSuccess);
}

TEST_F(SqliteRegistryTest, LetsSeveralProcessesFindTheSameDamage) {
  fs::create_directories(path_.parent_path());
  std::ofstream(path_) << Noise(20'000, 4);
  std::vector<pid_t> children;
  for (int i = 0; i < 8; ++i) {
    children.push_back(Spawn([&, i] {
      SqliteRegistry registry = Open();
      const std::string name = std::to_string(i);
      if (SetInTheEnd(registry, "A", name, name) != registry::kSuccess) return 100;
      return static_cast<int>(setAside_.size());
    }));
  }
  int reports = 0;
  for (const pid_t child : children) reports += WaitFor(child);
  EXPECT_EQ(reports, 1);
  SqliteRegistry registry = Open();
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(Get(registry, "A", std::to_string(i)), std::to_string(i));
  }
}

TEST_F(SqliteRegistryTest, HoldsOldOrNewValuesAfterAKillAtAnyMoment) {
  std::mt19937 random(5);
  // The long text spans several pages, so that a torn write would show.
  const auto text = [](int number) { return std::to_string(number) + std::string(9000, 'x'); };
  const auto write = [&](const std::string& name, int reports) {
    SqliteRegistry registry = Open();
    for (int i = 1;; ++i) {
      if (SetInTheEnd(registry, "Shared", name, text(i)) != registry::kSuccess) return 1;
      if (::write(reports, &i, sizeof i) != sizeof i) return 2;
    }
  };
  for (int round = 0; round < 25; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t steady = Spawn([&] {
      close(ends[1]);
      SqliteRegistry registry = Open();
      while (SetInTheEnd(registry, "Shared", "steady", text(7)) == registry::kSuccess) continue;
      return 1;
    });
    const std::string name = "killed" + std::to_string(round);
    const pid_t killed = Spawn([&] { return write(name, ends[1]); });
    close(ends[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
    kill(killed, SIGKILL);
    EXPECT_EQ(WaitFor(killed), -SIGKILL);
    int reported = 0;
    int last = 0;
    while (read(ends[0], &last, sizeof last) == sizeof last) reported = last;
    close(ends[0]);

    SqliteRegistry registry = Open();
    const std::string held = Get(registry, "Shared", name);
    EXPECT_TRUE((reported == 0 && held.starts_with("no ")) || held == text(reported) ||
                held == text(reported + 1))
        << held.substr(0, 20) << " but " << reported << " was written";
    EXPECT_EQ(waitpid(steady, nullptr, WNOHANG), 0) << "the other process was disturbed";
    kill(steady, SIGKILL);
    WaitFor(steady);
  }
  EXPECT_TRUE(setAside_.empty());
}

}  // namespace
}  // namespace tallowin::platform::linux_host
