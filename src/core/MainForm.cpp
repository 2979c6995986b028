#include "core/MainForm.h"

#include "core/TestPrograms.h"

namespace tallowin::core {

namespace {

constexpr const char* kArgHelp =
    "Command Line Parameters\r\n"
    "---\r\n"
    "-DisableMon\t- Disable Active Monitoring\r\n"
    "-DisableSentry\t- Disable Port Sentry\r\n"
    "-Restored\t\t- Start window restored";

}  // namespace

MainForm::MainForm()
    : Form("MainForm"),
      ArgHelp{NonVisible, "ArgHelp", {.text = kArgHelp, .multiLine = true}},
      TestEXE{NonVisible, "TestEXE", {.text = kTestExe, .multiLine = true}},
      Testcom{NonVisible, "Testcom", {.text = kTestCom, .multiLine = true}} {
  portsntmnu.SetChecked(true);
  ActiveMonMnu.SetChecked(true);
  Status.SetToolTip("Status Information");
  LoggedIPs.SetToolTip("IP addresses of malicious users");
  NonVisible.SetVisible(false);
}

}  // namespace tallowin::core
