// tallowin: the suite on the desktop.

#include <QApplication>
#include <QIcon>
#include <iostream>

#include "desktop/BigMSGView.h"
#include "desktop/ChatWindowView.h"
#include "desktop/DesktopQuestions.h"
#include "desktop/MainWindow.h"
#include "desktop/Text.h"
#include "forms/PlainText.h"
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
  for (const int size : {16, 32, 48, 64}) {
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
void Run(EventLoop& loop, tallowin::Tallowin& program) {
  loop.Deliver([&] { program.Start(); });
  if (loop.Ended()) return;
  const desktop::MainWindow mainWindow(program.MainForm(), loop);
  const desktop::ChatWindowView chatWindow(program.ChatWindow(), loop);
  const desktop::BigMSGView bigMSG(program.BigMSG(), loop);
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

  linux_host::LinuxHost host(
      linux_host::LinuxFolders::FromEnvironment(), [](const std::string& message) {
        std::cerr << "tallowin: " << tallowin::forms::PlainText(message) << "\n";
      });
  EventLoop& loop = host.Host().loop;
  desktop::DesktopQuestions questions(loop);
  tallowin::Tallowin program(host.Host(), questions, ArgumentText());

  loop.OnTerminationRequest([&] { program.Quit(); });
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                   [&] { loop.Deliver([&] { program.SaveLog(); }); });
  Run(loop, program);
  return loop.ExitStatus();
}
