// tallowin: the suite on the desktop.

#include <QApplication>
#include <QIcon>

#include "desktop/AboutView.h"
#include "desktop/AutoUpdateWindow.h"
#include "desktop/BigMSGView.h"
#include "desktop/ChatWindowView.h"
#include "desktop/DesktopQuestions.h"
#include "desktop/HostWarnings.h"
#include "desktop/MainWindow.h"
#include "desktop/NetstatWindow.h"
#include "desktop/OptionsWindow.h"
#include "desktop/ProcessManWindow.h"
#include "desktop/ReportHackerWindow.h"
#include "desktop/StringExtractWindow.h"
#include "desktop/Text.h"
#include "desktop/TrayIconView.h"
#include "platform/linux/LinuxHost.h"
#include "platform/linux/StandardDescriptors.h"
#include "tallowin/Tallowin.h"

namespace {

using tallowin::platform::EventLoop;
namespace desktop = tallowin::desktop;
namespace linux_host = tallowin::platform::linux_host;

constexpr const char* kApplicationId = "example.marrowind.Tallowin";

QIcon OwnIcon() {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(QString(":/icons/tallowin-%1.png").arg(size), QSize(size, size));
  }
  return icon;
}

void SetIdentity() {
  QApplication::setApplicationName("tallowin");
  QApplication::setApplicationDisplayName(QString());
  QApplication::setDesktopFileName(kApplicationId);
  QApplication::setWindowIcon(OwnIcon());
  // The program outlives its windows: it stands guard while none is shown.
  QApplication::setQuitOnLastWindowClosed(false);
}

std::string ArgumentText() {
  return desktop::FromQString(QApplication::arguments().mid(1).join(' '));
}

/// The windows come up after the services, which must not wait for them. A question that start-up
/// itself asks needs no window.
void Run(EventLoop& loop, tallowin::Tallowin& program, desktop::HostWarnings& warnings) {
  loop.Deliver([&] { program.Start(); });
  if (loop.Ended()) return;
  desktop::TrayIconView trayIcon(program.Forms().TaskBar(), loop);
  desktop::MainWindow mainWindow(program.MainForm(), loop, trayIcon.HiddenWaitInTaskList());
  trayIcon.OnChange = [&] { mainWindow.SetHiddenWaitsInTaskList(trayIcon.HiddenWaitInTaskList()); };
  const desktop::OptionsWindow options(program.Options(), loop);
  const desktop::ChatWindowView chatWindow(program.ChatWindow(), loop);
  const desktop::BigMSGView bigMSG(program.BigMSG(), loop);
  const desktop::AboutView about(program.FrmAbout(), loop);
  const desktop::ProcessManWindow processMan(program.ProcessManFrm(), loop);
  const desktop::NetstatWindow netstat(program.Netstatfrm(), loop);
  const desktop::StringExtractWindow stringExtract(program.StringExtractFrm(), loop);
  const desktop::ReportHackerWindow reportHacker(program.ReportHacker(), loop);
  const desktop::AutoUpdateWindow autoUpdate(program.AutoUpdate(), loop);
  warnings.Show();
  try {
    loop.RunUntil([] { return false; });
  } catch (const tallowin::platform::ProgramEnded&) {
    // The one way out.
  }
}

}  // namespace

int main(int argc, char** argv) {
  linux_host::OpenStandardDescriptors();
  const QApplication application(argc, argv);
  SetIdentity();

  desktop::HostWarnings warnings;
  linux_host::LinuxHost host(linux_host::LinuxFolders::FromEnvironment(),
                             [&](const std::string& message) { warnings.Add(message); });
  EventLoop& loop = host.Host().loop;
  desktop::DesktopQuestions questions(loop);
  tallowin::Tallowin program(host.Host(), questions, ArgumentText());

  loop.OnTerminationRequest([&] { program.Quit(); });
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                   [&] { loop.Deliver([&] { program.SaveLog(); }); });
  Run(loop, program, warnings);
  return loop.ExitStatus();
}
