#include "tallowin/Tallowin.h"

#include <utility>

#include "core/MiscRoutines.h"
#include "platform/EventLoop.h"

namespace tallowin {

Tallowin::Tallowin(const platform::Host& host, forms::Questions& questions, std::string commandLine)
    : host_(host),
      questions_(questions),
      commandLine_(std::move(commandLine)),
      module_(host.paths, host.system),
      settings_(host.registry, mainForm_, options_),
      log_(mainForm_, options_, module_, host.loop, host.regional),
      portSockets_(MakePortSockets()),
      portListeners_(portSockets_, settings_, form1_, log_, host.loop),
      chat_(chatWindow_, portSockets_, settings_, host.loop),
      connections_(portSockets_, settings_, mainForm_, log_, chat_, host.loop),
      identD_(host.sockets, mainForm_, options_, log_, host.loop) {
  for (forms::Form* form :
       {static_cast<forms::Form*>(&mainForm_), static_cast<forms::Form*>(&options_),
        static_cast<forms::Form*>(&form1_), static_cast<forms::Form*>(&chatWindow_)}) {
    forms_.Add(*form);
  }
  WireMenu();
  WireOptions();
  host_.loop.OnUnhandledError([this](const auto& error) { EndByError(error); });
}

portsentry::PortSockets Tallowin::MakePortSockets() {
  // The handlers are reached through `this`, as sockets come into being only after start-up.
  auto listening = [this](int index) {
    return platform::SocketEvents{
        .ConnectionRequest =
            [this, index](std::int32_t requestID) {
              connections_.Listen_ConnectionRequest(index, requestID);
            },
        .Error =
            [this, index](int number, const std::string& description) {
              connections_.Listen_Error(index, number, description);
            },
    };
  };
  auto accepted = [this](int index) {
    return platform::SocketEvents{
        .DataArrival = [this, index](std::int32_t) { connections_.Accept_DataArrival(index); },
        .Close = [this, index] { connections_.Accept_Close(index); },
        .Error =
            [this, index](int number, const std::string& description) {
              connections_.Accept_Error(index, number, description);
            },
    };
  };
  return {.Listen = {host_.sockets, listening}, .Accept = {host_.sockets, accepted}};
}

void Tallowin::UpdateSentry(std::string_view which) {
  if (core::LowerCase(which) != "port") return;
  // Asked before the teardown, whose log line lets the user switch once more in between.
  const bool on = mainForm_.portsntmnu.Checked();
  portListeners_.DeactivatePortSentry();
  if (on) portListeners_.ActivatePortSentry();
}

void Tallowin::SaveLog() { log_.WriteLogFile(mainForm_.Status.Text()); }

void Tallowin::Quit() {
  SaveLog();
  host_.loop.End(0);
}

void Tallowin::EndByError(const platform::RunTimeError& error) {
  // Events run on while the log is written and behind the message box. It is the first failure that
  // is told; a second one changes nothing.
  if (std::exchange(endingByError_, true)) return;
  SaveLog();
  questions_.MsgBox(
      "Run-time error '" + std::to_string(error.Number()) + "':\r\n\r\n" + error.Description(),
      forms::MessageBoxStyle::Stop, module_.ProductTitle);
  host_.loop.End(1);
}

}  // namespace tallowin
