// tallowin-console: the suite in a terminal.

#include <QCoreApplication>
#include <iostream>

#include "console/Console.h"
#include "forms/PlainText.h"
#include "platform/linux/LinuxHost.h"
#include "platform/linux/LinuxTerminal.h"
#include "platform/linux/StandardDescriptors.h"
#include "tallowin/Tallowin.h"

namespace {

using tallowin::console::Console;
using tallowin::platform::EventLoop;
namespace linux_host = tallowin::platform::linux_host;

std::string ArgumentText(int argc, char** argv) {
  std::string text;
  for (int i = 1; i < argc; ++i) text.append(i == 1 ? "" : " ").append(argv[i]);
  return text;
}

int RunToItsEnd(EventLoop& loop, Console& console, tallowin::Tallowin& program) {
  loop.OnTerminationRequest([&] { program.Quit(); });
  loop.Deliver([&] { console.RunStartUp([&] { program.Start(); }); });
  try {
    loop.RunUntil([] { return false; });
  } catch (const tallowin::platform::ProgramEnded&) {
    // The one way out.
  }
  return loop.ExitStatus();
}

}  // namespace

int main(int argc, char** argv) {
  linux_host::OpenStandardDescriptors();
  // Qt's own loop wakes up less often than the one over GLib, and starts faster.
  qputenv("QT_NO_GLIB", "1");
  const std::string arguments = ArgumentText(argc, argv);
  const QCoreApplication application(argc, argv);

  linux_host::LinuxHost host(
      linux_host::LinuxFolders::FromEnvironment(), [](const std::string& message) {
        std::cerr << "tallowin-console: " << tallowin::forms::PlainText(message) << "\n";
      });
  linux_host::LinuxTerminal terminal(host.Loop());
  Console console(terminal, host.Loop());
  tallowin::Tallowin program(host.Host(), console.Questions(), arguments);
  console.Attach(program.Forms(), program.MainForm().Status, [&] { program.Quit(); });
  return RunToItsEnd(host.Loop(), console, program);
}
