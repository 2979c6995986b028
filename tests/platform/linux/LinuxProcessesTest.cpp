#include "platform/linux/LinuxProcesses.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

#include "platform/linux/ProcessFiles.h"
#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

/// A process that sleeps until it is killed, or else until the test ends.
class Child {
 public:
  explicit Child(const std::string& program) {
    std::array<char*, 3> arguments = {const_cast<char*>(program.c_str()), const_cast<char*>("1000"),
                                      nullptr};
    if (posix_spawn(&id_, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
      throw std::runtime_error("cannot start " + program);
    }
  }
  explicit Child(pid_t id) : id_(id) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (id_ <= 0) return;
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
  }
  [[nodiscard]] std::uint32_t Id() const { return static_cast<std::uint32_t>(id_); }

  /// The signal that ended it. Until then its id stays taken.
  int Wait() {
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }
  void WaitUntilEnded() const {
    siginfo_t ended = {};
    waitid(P_PID, static_cast<id_t>(id_), &ended, WEXITED | WNOWAIT);
  }
  [[nodiscard]] bool Runs() const {
    siginfo_t ended = {};
    waitid(P_PID, static_cast<id_t>(id_), &ended, WEXITED | WNOWAIT | WNOHANG);
    return ended.si_pid == 0;
  }

 private:
  pid_t id_ = 0;
};

std::optional<ProcessEntry> Find(LinuxProcesses& processes, std::uint32_t id) {
  const auto entries = processes.Snapshot();
  if (!entries) return {};
  const auto found = std::find_if(entries->begin(), entries->end(),
                                  [&](const ProcessEntry& entry) { return entry.processId == id; });
  return found == entries->end() ? std::nullopt : std::optional(*found);
}

class LinuxProcessesTest : public testing::Test {
 protected:
  test::TemporaryHome home_;
  LinuxProcesses processes_;
  std::string program_ = Copy("sleeper");

  std::string Copy(const std::string& name) {
    std::string path = fs::canonical(home_.Path()).string() + "/" + name;
    fs::copy_file(fs::canonical("/bin/sleep"), path);
    return path;
  }
};

TEST_F(LinuxProcessesTest, EntriesTellPathAndPriority) {
  const Child ordinary(program_);
  const Child nice(program_);
  ASSERT_EQ(setpriority(PRIO_PROCESS, nice.Id(), 19), 0);
  const auto entries = processes_.Snapshot();
  ASSERT_TRUE(entries);
  EXPECT_EQ(entries->front().processId, 0U);
  EXPECT_TRUE(std::is_sorted(entries->begin(), entries->end(), [](const auto& a, const auto& b) {
    return a.processId < b.processId;
  }));
  const auto entry = Find(processes_, ordinary.Id());
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->exeFile, program_ + '\0');
  EXPECT_EQ(entry->basePriority, BasePriority(getpriority(PRIO_PROCESS, 0), SCHED_OTHER));
  EXPECT_EQ(Find(processes_, nice.Id())->basePriority, 4);
  // The threads of the kernel have the second process of the machine as their parent.
  for (const auto& [id, started, priority, file] : *entries)
    EXPECT_NE(file, std::string("kthreadd\0", 9));
}

TEST_F(LinuxProcessesTest, ADeletedProgramKeepsItsPathUntilAnotherFileTakesIt) {
  const Child child(program_);
  fs::remove(program_);
  EXPECT_EQ(Find(processes_, child.Id())->exeFile, program_ + '\0');
  test::WriteFile(home_.Path() + "/new", "new");
  fs::rename(home_.Path() + "/new", program_);
  EXPECT_EQ(Find(processes_, child.Id())->exeFile, std::string("sleeper") + '\0');

  const std::string marked = Copy("odd (deleted)");
  const Child odd(marked);
  EXPECT_EQ(Find(processes_, odd.Id())->exeFile, marked + '\0');

  const std::string linked = Copy("linked");
  fs::create_hard_link(linked, home_.Path() + "/other name");
  const Child underOneOfTwo(linked);
  fs::remove(linked);
  EXPECT_EQ(Find(processes_, underOneOfTwo.Id())->exeFile, linked + '\0');
}

TEST_F(LinuxProcessesTest, AProcessRunsOnWithoutItsFirstThread) {
  Child child(fork());
  if (child.Id() == 0) {
    std::thread([] { pause(); }).detach();
    syscall(SYS_exit, 0);
  }
  const std::string status = "/proc/" + std::to_string(child.Id()) + "/stat";
  while (ParseProcessStatus(test::FileText(status))->state != 'Z') std::this_thread::yield();
  const auto entry = Find(processes_, child.Id());
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->exeFile, fs::read_symlink("/proc/self/exe").string() + '\0');
  processes_.Terminate(*entry);
  EXPECT_EQ(child.Wait(), SIGKILL);
}

TEST_F(LinuxProcessesTest, AProcessThatGoesWhileItIsLookedAtIsNotListed) {
  // To read the file fails as it does where the process has gone since it was opened.
  fs::create_directories(home_.Path() + "/7");
  fs::create_symlink("/proc/self/mem", home_.Path() + "/7/stat");
  EXPECT_EQ(LinuxProcesses(home_.Path()).Snapshot()->size(), 1U);
}

TEST_F(LinuxProcessesTest, ProgramsThatMayNotBeKnownHaveTheirBareNames) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become another user";
  const fs::perms others = fs::perms::group_exec | fs::perms::others_exec;
  fs::permissions(home_.Path(), fs::perms::owner_all | others);
  fs::permissions(program_, fs::perms::owner_exec | others);
  const Child ofRoot(program_);
  const auto bothAreBare = [&]() noexcept {
    constexpr uid_t kNobody = 65534;
    if (setresuid(kNobody, kNobody, kNobody) != 0) return false;
    const Child unreadable(program_);
    const std::string bareName = std::string("sleeper") + '\0';
    return Find(processes_, unreadable.Id()).value().exeFile == bareName &&
           Find(processes_, ofRoot.Id()).value().exeFile == bareName;
  };
  Child user(fork());
  if (user.Id() == 0) kill(getpid(), bothAreBare() ? SIGUSR1 : SIGABRT);
  EXPECT_EQ(user.Wait(), SIGUSR1);
}

TEST_F(LinuxProcessesTest, TerminateKillsAndTheEndedAreNotListed) {
  Child child(program_);
  const auto entry = Find(processes_, child.Id());
  ASSERT_TRUE(entry);
  processes_.Terminate(*entry);
  child.WaitUntilEnded();
  EXPECT_FALSE(Find(processes_, child.Id()));  // though nobody has reaped it yet
  EXPECT_EQ(child.Wait(), SIGKILL);
  processes_.Terminate(*entry);
}

TEST_F(LinuxProcessesTest, AnotherProcessOfTheSameIdIsLeftAlone) {
  Child child(program_);
  auto entry = Find(processes_, child.Id());
  ASSERT_TRUE(entry);
  // What an entry looks like whose process has ended and whose id the child was given.
  --entry->startTime;
  processes_.Terminate(*entry);
  ++entry->startTime;
  Child later(program_);
  LinuxProcesses elsewhere(home_.Path());
  elsewhere.Terminate(*entry);
  // A process that is not killed proves it by still being there for the right entry.
  EXPECT_TRUE(child.Runs());
  processes_.Terminate(*entry);
  EXPECT_EQ(child.Wait(), SIGKILL);
  EXPECT_TRUE(later.Runs());
}

TEST_F(LinuxProcessesTest, ModulesAreTheExecutableFilesTheProgramFirst) {
  const Child child(program_);
  std::vector<ModuleEntry> modules;
  const auto loaded = [&] {
    return processes_.Modules(child.Id(), modules) == processes::kSuccess &&
           std::any_of(modules.begin(), modules.end(), [](const ModuleEntry& module) {
             return module.exePath.find("libc.so") != std::string::npos;
           });
  };
  while (!loaded()) std::this_thread::yield();
  EXPECT_EQ(modules.front().exePath, program_);
  for (const ModuleEntry& module : modules) {
    EXPECT_TRUE(module.exePath.starts_with('/')) << module.exePath;
    EXPECT_EQ(module.handle % 4096, 0U);
    EXPECT_EQ(
        std::count_if(modules.begin(), modules.end(),
                      [&](const ModuleEntry& other) { return other.exePath == module.exePath; }),
        1);
  }
  const auto before = modules.size();
  EXPECT_EQ(processes_.Modules(0x7FFFFFFF, modules), processes::kNoSuchProcess);
  EXPECT_EQ(modules.size(), before);
}

TEST_F(LinuxProcessesTest, NoProcessFolderIsNoSnapshot) {
  EXPECT_FALSE(LinuxProcesses(home_.Path() + "/none").Snapshot());
}

TEST(ProcessFiles, StatusLinesOfAnyName) {
  const std::string rest =
      " S 1 2 2 0 -1 4194560 1 2 3 4 5 6 7 8 20 5 1 0 777 9 10 11 1 1 0 0 0 0 0 0 0 0 0 0 17 3 0 0 "
      "0 0 0\n";
  for (const std::string name : {"a", "x) R 1 (", "", "\xFF\n"}) {
    const auto status = ParseProcessStatus("42 (" + name + ")" + rest);
    ASSERT_TRUE(status) << name;
    EXPECT_EQ(status->name, name);
    EXPECT_EQ(status->state, 'S');
    EXPECT_EQ(status->startTime, 777U);
    EXPECT_EQ(status->basePriority, 7);
    EXPECT_FALSE(status->kernelThread);
  }
  EXPECT_TRUE(ParseProcessStatus("2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 0 0 0 20 0 1 0 3 0 0 "
                                 "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0")
                  ->kernelThread);
  for (const char* text : {"", "1 (", "1 )(", "1 (a)", "1 (a) S 1 2 3"}) {
    EXPECT_FALSE(ParseProcessStatus(text)) << text;
  }
  EXPECT_EQ(BasePriority(0, SCHED_OTHER), 8);
  EXPECT_EQ(BasePriority(19, SCHED_OTHER), 4);
  EXPECT_EQ(BasePriority(-20, SCHED_OTHER), 13);
  EXPECT_EQ(BasePriority(0, SCHED_FIFO), 24);
  EXPECT_EQ(BasePriority(0, SCHED_IDLE), 4);
}

TEST(ProcessFiles, Mappings) {
  const auto mapping =
      ParseMapping("7f00-8f00 r-xp 00001000 08:01 12    /tmp/a  b\\012c (deleted)");
  ASSERT_TRUE(mapping);
  EXPECT_EQ(mapping->start, 0x7F00U);
  EXPECT_TRUE(mapping->executable);
  EXPECT_EQ(mapping->file, "/tmp/a  b\nc (deleted)");
  EXPECT_EQ(ParseMapping("7f00-8f00 r--p 00000000 00:00 0 ")->file, "");
  EXPECT_EQ(ParseMapping("7f00-8f00 r-xp 00000000 00:00 0   [vdso]")->file, "");
  for (const char* line : {"", " ", "zz r-xp", "-"}) EXPECT_FALSE(ParseMapping(line)) << line;
}

}  // namespace
}  // namespace tallowin::platform::linux_host
