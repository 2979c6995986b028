#include "portsentry/PortListeners.h"

#include <string>

namespace tallowin::portsentry {

namespace error = platform::error;

void PortListeners::ActivatePortSentry() {
  int slot = 0;
  core::ResumeOnError statement(
      [&](const platform::RunTimeError& failure) { ReportFailure(slot, failure); });

  form1_.enablemnu.SetEnabled(false);
  form1_.disableprotectmnu.SetEnabled(true);
  for (slot = core::kFirstSlot; slot <= core::kLastSlot; ++slot) OpenSlot(slot, statement);
  portSentryActive_ = true;
  log_.LogStatus("Port Sentry Activated", true);
}

void PortListeners::OpenSlot(int slot, core::ResumeOnError& statement) {
  const int port = settings_.PortSettings(slot).SocketNumber;
  if (port == 0) {
    log_.LogStatus("Array ID " + std::to_string(slot) + " Not in use", false);
    loop_.DoEvents();
    return;
  }
  statement([&] { sockets_.Listen.Load(slot); });
  statement([&] { sockets_.Accept.Load(slot); });
  statement([&] { sockets_.Listen(slot).SetLocalPort(port); });
  statement([&] { sockets_.Listen(slot).Listen(); });
  // Said of a port that could not be opened as well: the error lines stand right above it.
  log_.LogStatus("Port " + std::to_string(port) + " Initialised", false);
}

void PortListeners::ReportFailure(int slot, const platform::RunTimeError& failure) {
  const int number = failure.Number();
  if (number == error::kObjectNotSet || number == error::kLoopNotInitialised ||
      number == error::kElementAlreadyLoaded) {
    return;
  }
  log_.LogStatus("Error: " + std::to_string(number) + " " + failure.Description(), false);
  log_.LogStatus("Error Initialising Port " + std::to_string(slot), true);
}

void PortListeners::DeactivatePortSentry() {
  core::ResumeOnError statement;
  form1_.enablemnu.SetEnabled(true);
  form1_.disableprotectmnu.SetEnabled(false);
  for (int slot = core::kFirstSlot; slot <= core::kLastSlot; ++slot) {
    if (settings_.PortSettings(slot).SocketNumber == 0) continue;
    statement([&] { sockets_.Listen.Unload(slot); });
    statement([&] { sockets_.Accept.Unload(slot); });
    statement([&] { log_.LogStatus("Unloaded Array ID " + std::to_string(slot), false); });
  }
  portSentryActive_ = false;
  statement([&] { log_.LogStatus("Port Sentry Deactivated", true); });
}

void PortListeners::UpdateWinsocks() {
  log_.LogStatus("Updating Winsocks...", true);
  DeactivatePortSentry();
  ActivatePortSentry();
}

}  // namespace tallowin::portsentry
