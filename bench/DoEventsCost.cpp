// What a pass of the message loop costs when nothing is pending: each status line pays for one.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <memory>
#include <vector>

#include "platform/linux/LinuxEventLoop.h"
#include "platform/linux/LinuxWinsock.h"

namespace {

using tallowin::platform::linux_host::LinuxEventLoop;
using tallowin::platform::linux_host::LinuxSocketFactory;

/// With as many listeners as the argument says. QT_NO_GLIB=1 chooses Qt's own dispatcher.
void IdlePass(benchmark::State& state) {
  int argc = 1;
  char name[] = "bench";
  char* argv[] = {name, nullptr};
  const QCoreApplication application(argc, argv);
  LinuxEventLoop loop;
  LinuxSocketFactory factory(loop);
  std::vector<std::unique_ptr<tallowin::platform::Winsock>> listeners;
  for (int i = 0; i < state.range(0); ++i) {
    listeners.push_back(factory.MakeWinsock());
    listeners.back()->Listen();
  }
  for (auto _ : state) loop.DoEvents();
}
BENCHMARK(IdlePass)->Arg(0)->Arg(12);

}  // namespace

BENCHMARK_MAIN();
