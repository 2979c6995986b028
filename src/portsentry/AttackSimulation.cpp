#include "portsentry/AttackSimulation.h"

namespace tallowin::portsentry {

using forms::MessageBoxStyle;

AttackSimulation::AttackSimulation(platform::SocketFactory& sockets, core::MainForm& mainForm,
                                   core::SettingsStore& settings,
                                   const core::TallowinModule& module, forms::Questions& questions,
                                   platform::EventLoop& loop)
    : mainForm_(mainForm),
      settings_(settings),
      module_(module),
      questions_(questions),
      loop_(loop),
      simHackSck_(sockets.MakeWinsock()) {
  simHackSck_->SetRemoteHost("127.0.0.1");
  simHackSck_->SetEvents({
      .ConnectionRequest = {},
      .DataArrival = {},
      .Connect = {},
      .Close = [this] { SimHackSck_Close(); },
      .Error = [this](int /*number*/, const std::string& /*description*/) { SimHackSck_Error(); },
  });
  mainForm_.simhack.OnClick = [this] { simhack_Click(); };
}

void AttackSimulation::simhack_Click() {
  constexpr const char* kCannot = "Cannot Simulate Hack";
  if (!mainForm_.portsntmnu.Checked()) {
    questions_.MsgBox("Port Sentry Is Not Enabled", MessageBoxStyle::Information, kCannot);
    return;
  }
  questions_.MsgBox(
      "Tallowin will now test itself by simulating a hacker connecting to your computer. Do not "
      "panic if an alarm sounds or a visual warning appears on your screen as this is only a test.",
      MessageBoxStyle::Plain, module_.ProductTitle);
  simHackSck_->Close();  // an earlier run left it open
  loop_.DoEvents();
  mainForm_.simhack.SetEnabled(false);
  if (CallFirstUsedSlot()) return;
  // The item stays disabled until the program ends, as no event of the socket will come.
  questions_.MsgBox("You do not have any ports setup", MessageBoxStyle::Exclamation, kCannot);
}

bool AttackSimulation::CallFirstUsedSlot() {
  for (int slot = core::kFirstSlot; slot <= core::kLastSlot; ++slot) {
    const int port = settings_.PortSettings(slot).SocketNumber;
    if (port == 0) continue;
    simHackSck_->SetRemotePort(port);
    simHackSck_->Connect();
    return true;
  }
  return false;
}

void AttackSimulation::SimHackSck_Close() { mainForm_.simhack.SetEnabled(true); }

void AttackSimulation::SimHackSck_Error() {
  simHackSck_->Close();
  mainForm_.simhack.SetEnabled(true);
}

}  // namespace tallowin::portsentry
