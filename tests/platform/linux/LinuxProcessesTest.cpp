#include "platform/linux/LinuxProcesses.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <thread>

#include "platform/linux/FileDescriptor.h"
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
  std::vector<ModuleEntry> modules;
  EXPECT_EQ(processes_.Modules(child.Id(), modules), processes::kSuccess);
  EXPECT_EQ(modules.at(0).exePath, fs::read_symlink("/proc/self/exe"));
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
  child.WaitUntilEnded();
  EXPECT_FALSE(Find(processes_, child.Id())) << "though nobody has reaped it yet";
  EXPECT_EQ(child.Wait(), SIGKILL);
  EXPECT_TRUE(later.Runs());
}

class MappedFile {
 public:
  explicit MappedFile(const std::string& path, int flags = MAP_PRIVATE)
      : memory_(mmap(nullptr, 4096, PROT_READ | PROT_EXEC, flags,
                     FileDescriptor(open(path.c_str(), O_RDWR | O_CLOEXEC)).Get(), 0)) {}
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile() { munmap(memory_, 4096); }

 private:
  void* memory_;
};

TEST_F(LinuxProcessesTest, ModulesAreNamedByNoOtherFile) {
  const std::string folder = fs::canonical(home_.Path()).string() + "/";
  std::vector<std::unique_ptr<MappedFile>> mapped;
  for (const char* name : {"gone", "replaced", "odd (deleted)", "a\\012b", "a\nc"}) {
    test::WriteFile(folder + name, "text");
    mapped.push_back(std::make_unique<MappedFile>(folder + name));
  }
  mapped.push_back(std::make_unique<MappedFile>("/dev/zero", MAP_SHARED));
  fs::remove(folder + "gone");
  fs::remove(folder + "replaced");
  test::WriteFile(folder + "other", "clean");
  fs::rename(folder + "other", folder + "replaced");
  std::vector<ModuleEntry> modules;
  ASSERT_EQ(processes_.Modules(static_cast<std::uint32_t>(getpid()), modules), 0U);
  std::set<std::string> names;
  for (const ModuleEntry& module : modules) {
    EXPECT_FALSE(module.exePath.starts_with("/dev/"));
    if (module.exePath.starts_with(folder)) names.insert(module.exePath.substr(folder.size()));
  }
  EXPECT_EQ(names, (std::set<std::string>{"gone", "replaced (deleted)", "odd (deleted)", "a\\012b",
                                          "a\nc"}));
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
  EXPECT_FALSE(ParseProcessStatus("1 (a)" + rest)->ended);
  for (const auto& [running, ended] : {std::pair<std::string, std::string>{" S ", " Z "},
                                       {"4194560", "4194564"},
                                       {"11 1 1 0 0 0 0", "11 1 1 0 0 0 256"}}) {
    std::string text = rest;
    text.replace(text.find(running), running.size(), ended);
    EXPECT_TRUE(ParseProcessStatus("1 (a)" + text)->ended) << text;
  }
  EXPECT_EQ(BasePriority(0, SCHED_OTHER), 8);
  EXPECT_EQ(BasePriority(19, SCHED_OTHER), 4);
  EXPECT_EQ(BasePriority(-20, SCHED_OTHER), 13);
  EXPECT_EQ(BasePriority(0, SCHED_FIFO), 24);
  EXPECT_EQ(BasePriority(0, SCHED_IDLE), 4);
}

}  // namespace
}  // namespace tallowin::platform::linux_host
