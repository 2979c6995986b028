// The Load of MainForm: start-up, step by step.

#include "core/ErrorRegimes.h"
#include "platform/SingleInstance.h"
#include "tallowin/Tallowin.h"
#include "tallowin/Version.h"

namespace tallowin {

namespace {

constexpr int kWindowHeightInTwips = 5580;
constexpr int kWindows95 = 1;  ///< a system without statistics of its IP stack

}  // namespace

void Tallowin::Start() {
  // Whatever fails, the next step runs: a machine without settings still gets its window. Services
  // come up inside LoadSettings, so before the command line is looked at; "-disablesentry" thus
  // opens the listeners first and closes them at once.
  core::ResumeOnError step;
  step([&] { mainForm_.SetHeight(kWindowHeightInTwips); });
  step([&] {
    if (!host_.instance.Claim()) Quit();
  });
  step([&] { module_.ProductTitle = "Tallowin"; });
  step([&] { module_.SetAppVersion(kMajorVersion, kMinorVersion, kRevision); });
  step([&] {
    if (module_.GetOsKind() == kWindows95) mainForm_.inetstatsmnu.SetEnabled(false);
  });
  step([&] { mainForm_.SetCaption(module_.ProductTitle + " " + std::to_string(kMajorVersion)); });
  step([&] {
    mainForm_.SetState(forms::WindowState::Minimised);
    mainForm_.Hide();
  });
  step([&] { module_.SetWhoisServers(); });
  step([&] { module_.SetIniPaths(); });
  step([&] { sounds_.RegisterSoundEvents(); });
  step([&] { settings_.LoadPortSettings(); });
  step([&] { settings_.LoadSettings(); });
  step([&] { CheckArguments(); });
  step([&] { trayIcon_.Form1_Load(); });
}

}  // namespace tallowin
