// The cost of one status line with a long log, beside the same with an empty one.

#include <benchmark/benchmark.h>

#include "core/StatusLog.h"
#include "support/FakeHost.h"

namespace tallowin {
namespace {

void StatusLine(benchmark::State& state) {
  test::FakeHost host;
  core::MainForm mainForm;
  core::Options options;
  core::TallowinModule module(host.paths, host.system);
  core::StatusLog log(mainForm, options, module, host.loop, host.regional);
  // The real thing's observers take the addition alone, so one that does is enough here.
  std::size_t seen = 0;
  const auto observation =
      mainForm.Status.Observe([&](const forms::Change& change) { seen += change.addition.size(); });
  for (std::int64_t line = 0; line < state.range(0); ++line) {
    log.LogStatus("Connection Attempted On Port 2323", true);
  }
  for (auto _ : state) log.LogStatus("Connection Attempted On Port 2323", true);
  benchmark::DoNotOptimize(seen);
}
BENCHMARK(StatusLine)->ArgName("lines_before")->Arg(0)->Arg(1000000)->Iterations(200000);

}  // namespace
}  // namespace tallowin

BENCHMARK_MAIN();
