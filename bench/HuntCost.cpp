// Rating a file of 256 MB beside grep and a copy in memory; and a hunt over 300
// processes more than the machine has anyway beside reading each distinct program file once.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "Sleepers.h"
#include "analysis/SuspiciousWords.h"
#include "core/TallowinModule.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxPaths.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/WindowsDrive.h"
#include "support/FakeHost.h"
#include "trojansentry/HuntOffendingProcess.h"

namespace tallowin {
namespace {

namespace fs = std::filesystem;
namespace host = platform::linux_host;

constexpr std::size_t kFileSize = std::size_t{256} << 20U;

/// What the suite uses of this machine, with nobody to ask and no events.
struct Machine {
  test::TemporaryFolder folder;
  host::LinuxFolders folders{.config = folder.Path(),
                             .data = folder.Path(),
                             .program = folder.Path(),
                             .installedData = folder.Path(),
                             .home = folder.Path()};
  host::WindowsDrive drive{folders};
  host::LinuxPaths paths{folders, drive};
  host::LinuxFiles files{drive};
  host::LinuxProcesses processes;
  test::FakeLoop loop;
  test::FakeSystem system;
  test::ScriptedQuestions questions;
  core::MiscRoutines misc{paths, loop};
  core::TallowinModule module{paths, system};
  analysis::ReadFile readFile{misc, files};
  analysis::TrojanDetect detect{misc, readFile, loop};
  analysis::ModList9x modList9x{processes, module, misc};
};

/// The bytes of this machine's programs and libraries, up to 256 MB, the large ones repeated.
const std::string& LargeFile(Machine& machine) {
  static const std::string path = machine.folder.Path() + "-large";
  std::string bytes;
  for (const auto& entry : fs::directory_iterator("/usr/bin")) {
    if (bytes.size() >= kFileSize) break;
    if (entry.is_regular_file()) bytes += test::ReadFile(entry.path());
  }
  const std::size_t once = std::min(bytes.size(), kFileSize);
  bytes.resize(kFileSize);
  for (std::size_t at = once; at < kFileSize; at += once) {
    std::memcpy(bytes.data() + at, bytes.data(), std::min(once, kFileSize - at));
  }
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

void SetRate(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kFileSize));
}

void GetFileSuspicion(benchmark::State& state) {
  Machine machine;
  const std::string path = LargeFile(machine);
  for (auto _ : state) benchmark::DoNotOptimize(machine.detect.GetFileSuspicion(path));
  SetRate(state);
  fs::remove(path);
}
BENCHMARK(GetFileSuspicion)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);

void Grep(benchmark::State& state) {
  Machine machine;
  const std::string path = LargeFile(machine);
  const std::string words = machine.folder.Path() + "/words";
  std::ofstream list(words);
  for (const auto& entry : analysis::kSuspiciousWords) list << entry.word << "\n";
  list.close();
  // Not straight to /dev/null: grep knows it and stops at the first line that it finds.
  const std::string command =
      "LC_ALL=C grep -c -i -F -f " + words + " " + path + " | cat >/dev/null";
  for (auto _ : state) benchmark::DoNotOptimize(std::system(command.c_str()));
  SetRate(state);
  fs::remove(path);
}
BENCHMARK(Grep)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);

void CopyInMemory(benchmark::State& state) {
  const std::vector<char> from(kFileSize, 'x');
  std::vector<char> to(kFileSize);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), kFileSize);
    benchmark::ClobberMemory();
  }
  SetRate(state);
}
BENCHMARK(CopyInMemory)->Unit(benchmark::kMillisecond)->UseRealTime();

void Hunt(benchmark::State& state) {
  Machine machine;
  const bench::Sleepers sleepers(machine.folder.Path(), 300);
  const std::string offender = machine.folder.Path() + "/offender";
  std::ofstream(offender) << "nothing that runs";
  trojansentry::OffendingProcessHunt hunt({.misc = machine.misc,
                                           .readFile = machine.readFile,
                                           .trojanDetect = machine.detect,
                                           .modList9x = machine.modList9x,
                                           .processes = machine.processes,
                                           .files = machine.files,
                                           .questions = machine.questions});
  for (auto _ : state) {
    std::string file = offender;
    hunt.HuntOffendingProcess(file);
    if (!file.empty() || !machine.questions.asked.empty()) state.SkipWithError("no plain hunt");
  }
  state.counters["processes"] = static_cast<double>(machine.processes.Snapshot()->size());
}
BENCHMARK(Hunt)->Unit(benchmark::kMillisecond)->UseRealTime();

void ReadEachProgramOnce(benchmark::State& state) {
  Machine machine;
  const bench::Sleepers sleepers(machine.folder.Path(), 300);
  std::size_t bytes = 0;
  std::size_t files = 0;
  for (auto _ : state) {
    std::set<std::string> paths;
    const auto snapshot = machine.processes.Snapshot();
    for (const auto& entry : *snapshot) {
      paths.insert(analysis::TrimAtNull(entry.exeFile));
    }
    bytes = 0;
    for (const std::string& path : paths) {
      if (machine.misc.FileExists(path)) bytes += machine.files.Read(path).Text().size();
    }
    files = paths.size();
  }
  state.counters["files"] = static_cast<double>(files);
  state.counters["megabytes"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(ReadEachProgramOnce)->Unit(benchmark::kMillisecond)->UseRealTime();

void SnapshotAlone(benchmark::State& state) {
  Machine machine;
  const bench::Sleepers sleepers(machine.folder.Path(), 300);
  for (auto _ : state) benchmark::DoNotOptimize(machine.processes.Snapshot());
}
BENCHMARK(SnapshotAlone)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace tallowin

BENCHMARK_MAIN();
