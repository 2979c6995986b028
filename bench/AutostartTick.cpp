// What one tick of the autostart watch asks of the Run keys, nine enumerations, with nothing
// changed; beside it the least that polling could cost: one look at the stamp of each folder.

#include <benchmark/benchmark.h>
#include <sys/stat.h>
#include <time.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/AutostartRegistry.h"
#include "platform/linux/SqliteRegistry.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

/// 200 entries: 50 for each of XDG user and system, 50 system units, 25 user units, 25 of cron.
class System {
 public:
  System() {
    std::string pattern = (fs::temp_directory_path() / "autostart-XXXXXX").string();
    top_ = mkdtemp(pattern.data());
    for (const char* folder : {"/user", "/xdg", "/units/u.wants", "/system/s.wants", "/cron"}) {
      fs::create_directories(top_ + folder);
    }
    for (int i = 0; i < 50; ++i) {
      const std::string name = std::to_string(i);
      Write("/user/" + name + ".desktop", "[Desktop Entry]\nExec=/usr/bin/tool " + name + "\n");
      Write("/xdg/s" + name + ".desktop", "[Desktop Entry]\nExec=/usr/bin/tool " + name + "\n");
      Enable("/system/", "s.wants/", name);
      if (i < 25) Enable("/units/", "u.wants/", name);
      if (i < 25) Write("/cron/" + name, "@reboot root /usr/bin/tool " + name + "\n");
    }
  }
  ~System() { fs::remove_all(top_); }
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  [[nodiscard]] AutostartPlaces Places() const {
    return {.userAutostart = top_ + "/user",
            .systemAutostart = {top_ + "/xdg"},
            .userUnits = {{top_ + "/units"}},
            .systemUnits = {{top_ + "/system"}},
            .cronFolder = top_ + "/cron",
            .userTables = top_ + "/cron",
            .copies = top_ + "/copies"};
  }
  [[nodiscard]] std::vector<std::string> Folders() const {
    return {top_ + "/user",          top_ + "/xdg",    top_ + "/units",
            top_ + "/units/u.wants", top_ + "/system", top_ + "/system/s.wants",
            top_ + "/cron"};
  }
  [[nodiscard]] std::string Store() const { return top_ + "/registry.sqlite"; }

 private:
  void Write(const std::string& path, const std::string& text) const {
    std::ofstream(top_ + path) << text;
  }
  void Enable(const std::string& folder, const std::string& wants, const std::string& name) const {
    Write(folder + name + ".service", "[Service]\nExecStart=/usr/bin/tool " + name + "\n");
    fs::create_symlink("../" + name + ".service", top_ + folder + wants + name + ".service");
  }

  std::string top_;
};

constexpr const char* kRuns = "Software\\Microsoft\\Windows\\CurrentVersion\\";

class Views {
 public:
  Views(const System& system, AutostartTiming timing)
      : store_(system.Store()), registry_(store_, system.Places(), timing), keys_(3) {
    const std::string run = std::string(kRuns) + "Run";
    Open(0, RegistryRoot::LocalMachine, run);
    Open(1, RegistryRoot::LocalMachine, run + "Services");
    Open(2, RegistryRoot::CurrentUser, run);
  }

  std::size_t Tick() {
    std::size_t entries = 0;
    for (int round = 0; round < 3; ++round) {
      for (const auto& key : keys_) {
        std::uint32_t index = 0;
        while (key->EnumValue(index, name_, value_) == registry::kSuccess) ++index;
        entries += index;
      }
    }
    return entries / 3;
  }

 private:
  void Open(std::size_t index, RegistryRoot root, const std::string& path) {
    if (registry_.CreateKey(root, path, keys_[index]) != registry::kSuccess) std::abort();
  }

  SqliteRegistry store_;
  AutostartRegistry registry_;
  std::vector<std::unique_ptr<RegistryKey>> keys_;
  std::string name_;
  RegistryValue value_;
};

/// As it is when ticks come 300 ms apart: the first enumeration of each key polls.
void TickThatPolls(benchmark::State& state) {
  const System system;
  Views views(system, {.hold = std::chrono::milliseconds(5)});
  if (views.Tick() != 200) state.SkipWithError("not all entries are there");
  for (auto _ : state) {
    state.PauseTiming();
    timespec pause = {.tv_sec = 0, .tv_nsec = 6'000'000};
    (void)nanosleep(&pause, nullptr);
    state.ResumeTiming();
    benchmark::DoNotOptimize(views.Tick());
  }
}

void StatOfEachFolder(benchmark::State& state) {
  const System system;
  const std::vector<std::string> folders = system.Folders();
  for (auto _ : state) {
    for (const std::string& folder : folders) {
      struct stat status = {};
      benchmark::DoNotOptimize(stat(folder.c_str(), &status));
    }
  }
}

/// What is done every five seconds, or at a change: all folders and the stamps of all files.
void FullLook(benchmark::State& state) {
  const System system;
  Views views(system, {.hold = {}, .fullLook = {}, .quickLook = std::chrono::hours(1)});
  std::size_t number = 0;
  if (views.Tick() != 200) state.SkipWithError("not all entries are there");
  for (auto _ : state) {
    state.PauseTiming();
    for (const std::string& folder : system.Folders()) {
      std::ofstream(folder + "/touched") << ++number;
    }
    state.ResumeTiming();
    benchmark::DoNotOptimize(views.Tick());
  }
}

BENCHMARK(TickThatPolls)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(StatOfEachFolder)->Unit(benchmark::kMicrosecond);
BENCHMARK(FullLook)->Iterations(300)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tallowin::platform::linux_host

BENCHMARK_MAIN();
