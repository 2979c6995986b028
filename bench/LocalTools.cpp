// Tables as text by the row, which must not depend on their number; and the process list of 500
// processes more than the machine has beside "ps -e".

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "Sleepers.h"
#include "analysis/AlignColumns.h"
#include "analysis/ListViewMod.h"
#include "analysis/ProcessManager.h"
#include "platform/linux/LinuxProcesses.h"
#include "support/FakeHost.h"

namespace tallowin {
namespace {

constexpr int kProcesses = 500;

/// Rows as those of a process list.
std::string TableText(std::int64_t rows) {
  std::string text;
  for (std::int64_t row = 0; row < rows; ++row) {
    text += "/usr/lib/some-program-" + std::to_string(row % 97 * row) + "/program\t" +
            std::to_string(row) + "\t08 Normal\tSafe\tNo Virii Found\r\n";
  }
  return text;
}

void PerRow(benchmark::State& state) {
  state.counters["per_row"] =
      benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void AlignColumns(benchmark::State& state) {
  const std::string table = TableText(state.range(0));
  for (auto _ : state) {
    std::string text = table;
    benchmark::DoNotOptimize(analysis::AlignColumns(text, 2));
  }
  PerRow(state);
}
BENCHMARK(AlignColumns)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void LVFromString(benchmark::State& state) {
  const std::string table = TableText(state.range(0));
  forms::Form form("Form");
  forms::ListView list(form, "list", {"Process"});
  for (auto _ : state) {
    std::string text = table;
    if (!analysis::LVFromString(list, text).empty()) state.SkipWithError("not filled");
  }
  PerRow(state);
}
BENCHMARK(LVFromString)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void GetProcessesIntoLV(benchmark::State& state) {
  test::FakeHost host;
  host.system.version = {.platformId = 1, .majorVersion = 4, .minorVersion = 10};
  test::ScriptedQuestions questions;
  platform::linux_host::LinuxProcesses processes;
  core::MainForm mainForm;
  core::Options options;
  core::TallowinModule module(host.paths, host.system);
  core::MiscRoutines misc(host.paths, host.loop);
  core::StatusLog log(mainForm, options, module, host.loop, host.regional);
  analysis::ReadFile readFile(misc, host.files);
  analysis::TrojanDetect detect(misc, readFile, host.loop);
  analysis::ModList9x modList9x(processes, module, misc);
  analysis::ProcessManFrm form;
  analysis::ProcessManager manager(form, {.misc = misc,
                                          .trojanDetect = detect,
                                          .modList9x = modList9x,
                                          .processes = processes,
                                          .files = host.files,
                                          .log = log,
                                          .questions = questions});
  const bench::Sleepers sleepers(host.folder.Path(), kProcesses);
  for (auto _ : state) manager.GetProcessesIntoLV();
  state.counters["rows"] = static_cast<double>(form.ProcView1.RowCount());
}
BENCHMARK(GetProcessesIntoLV)->Unit(benchmark::kMillisecond)->UseRealTime();

void Ps(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const bench::Sleepers sleepers(folder.Path(), kProcesses);
  for (auto _ : state) benchmark::DoNotOptimize(std::system("ps -e >/dev/null"));
}
BENCHMARK(Ps)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace tallowin

BENCHMARK_MAIN();
