#include "tallowin/Tallowin.h"

#include <utility>

#include "core/MiscRoutines.h"
#include "platform/EventLoop.h"

namespace tallowin {

Tallowin::Tallowin(const platform::Host& host, forms::Questions& questions, std::string commandLine,
                   const core::Endpoints& endpoints)
    : host_(host),
      questions_(questions),
      commandLine_(std::move(commandLine)),
      module_(host.paths, host.system, endpoints),
      misc_(host.paths, host.loop),
      runWith_(host.shell),
      settings_(host.registry, mainForm_, options_),
      optionsDialog_(options_, settings_, module_, {host.loop, runWith_, host.sound, questions}),
      log_(mainForm_, options_, module_, host.loop, host.regional),
      mail_(host.smtp, log_, host.loop),
      notification_(mainForm_, options_, mail_),
      icmpTools_(host.icmp, host.names, host.loop),
      whois_(
          host.sockets, mainForm_, module_, log_, icmpTools_,
          [this]() -> forms::ItemList& { return hackerReport_.Loaded().emaillist; },
          endpoints.whoisPort),
      ipTools_(mainForm_, log_, icmpTools_, whois_, host.loop),
      portSockets_(MakePortSockets()),
      portListeners_(portSockets_, settings_, form1_, log_, host.loop),
      chat_(chatWindow_, portSockets_, settings_, host.loop),
      sounds_(host.registry, host.sound, module_),
      formFlash_(bigMSG_, host.loop),
      modemHangUp_(host.dialUp),
      alarms_(settings_, sounds_, formFlash_, host.shutdown, MakeAlarmActions()),
      connections_(portSockets_, settings_, mainForm_, log_, chat_, alarms_, host.loop),
      simulation_(host.sockets, mainForm_, settings_, module_, questions, host.loop),
      readFile_(misc_, host.files),
      trojanDetect_(misc_, readFile_, host.loop),
      modList9x_(host.processes, module_, misc_),
      infectionCheck_(mainForm_, misc_, readFile_, host.files, log_, host.loop),
      processManager_(processManFrm_, {.misc = misc_,
                                       .trojanDetect = trojanDetect_,
                                       .modList9x = modList9x_,
                                       .processes = host.processes,
                                       .files = host.files,
                                       .log = log_,
                                       .questions = questions}),
      internetStatistics_(netstatfrm_, host.ipStatistics, log_, questions),
      fileAnalysis_({.host = {host.fileFacts, host.versionInfo, host.paths, host.regional},
                     .modules = host.modules,
                     .misc = misc_,
                     .readFile = readFile_,
                     .detect = trojanDetect_,
                     .loop = host.loop,
                     .questions = questions},
                    stringExtractFrm_),
      hunt_({.misc = misc_,
             .readFile = readFile_,
             .trojanDetect = trojanDetect_,
             .modList9x = modList9x_,
             .processes = host.processes,
             .files = host.files,
             .questions = questions}),
      trojanMon_({host.registry, host.iniFiles, host.paths, host.loop}, module_, log_, questions,
                 MakeWatchActions()),
      identD_(host.sockets, mainForm_, options_, log_, host.loop),
      timeSync_({.sockets = host.sockets,
                 .regional = host.regional,
                 .clock = host.clock,
                 .loop = host.loop},
                mainForm_, options_, log_, endpoints.timeServer, endpoints.timePort),
      hackerReport_(reportHacker_, options_, mail_),
      httpModule_(host.http, host.loop),
      updateCheck_(autoUpdate_, module_, httpModule_, runWith_, host.loop, endpoints.updateFile),
      aboutBox_(frmAbout_, module_, runWith_, host.loop),
      trayIcon_({.form1 = form1_,
                 .mainForm = mainForm_,
                 .taskBar = forms_.TaskBar(),
                 .module = module_,
                 .questions = questions},
                [this] { RestoreMainWindow(); }) {
  for (forms::Form* form :
       {static_cast<forms::Form*>(&mainForm_), static_cast<forms::Form*>(&options_),
        static_cast<forms::Form*>(&form1_), static_cast<forms::Form*>(&chatWindow_),
        static_cast<forms::Form*>(&bigMSG_), static_cast<forms::Form*>(&reportHacker_),
        static_cast<forms::Form*>(&processManFrm_), static_cast<forms::Form*>(&netstatfrm_),
        static_cast<forms::Form*>(&autoUpdate_), static_cast<forms::Form*>(&frmAbout_),
        static_cast<forms::Form*>(&stringExtractFrm_)}) {
    forms_.Add(*form);
  }
  WireMenu();
  WireHelpMenu();
  WireOptions();
  WireClock();
  WireReporting();
  log_.OnNotify = [this] { notification_.SendNotification(notification_.ComposeMessage()); };
  host_.loop.OnUnhandledError([this](const auto& error) { EndByError(error); });
}

portsentry::PortSockets Tallowin::MakePortSockets() {
  // The handlers are reached through `this`, as sockets come into being only later.
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

portsentry::AlarmResponses::Actions Tallowin::MakeAlarmActions() {
  return {
      .PressToolbar1 =
          [this](int button) {
            forms::ToolBar& bar = mainForm_.Toolbar1;
            bar.Click(bar.Buttons(static_cast<std::size_t>(button)));
          },
      .HangUpConnection = [this] { modemHangUp_.HangUpConnection(); },
  };
}

trojansentry::TrojanMon::Actions Tallowin::MakeWatchActions() {
  return {
      .PlayTrojanDetected =
          [this] {
            sounds_.PlaySoundEvent(portsentry::kSoundApplication, portsentry::kTrojanDetected);
          },
      .HuntOffendingProcess =
          [this](std::string& offendingFile) { hunt_.HuntOffendingProcess(offendingFile); },
  };
}

void Tallowin::UpdateSentry(std::string_view which) {
  const std::string sentry = core::LowerCase(which);
  // The tick is asked for before the teardown, whose log line lets the user switch once more in
  // between.
  if (sentry == "port") {
    const bool on = mainForm_.portsntmnu.Checked();
    portListeners_.DeactivatePortSentry();
    if (on) portListeners_.ActivatePortSentry();
  }
  if (sentry == "trojan") {
    const bool on = mainForm_.ActiveMonMnu.Checked();
    trojanMon_.StopTrojanSentry();
    if (on) trojanMon_.StartTrojanSentry();
  }
}

void Tallowin::SaveLog() { log_.WriteLogFile(mainForm_.Status.Text()); }

void Tallowin::Quit() {
  SaveLog();
  trayIcon_.Delete();
  host_.loop.End(0);
}

void Tallowin::EndByError(const platform::RunTimeError& error) {
  // Events run on while the log is written and behind the message box. It is the first failure that
  // is told; a second one changes nothing.
  if (std::exchange(endingByError_, true)) return;
  SaveLog();
  const std::string saved = mainForm_.Status.Text();
  questions_.MsgBox(
      "Run-time error '" + std::to_string(error.Number()) + "':\r\n\r\n" + error.Description(),
      forms::MessageBoxStyle::Stop, module_.ProductTitle);
  // The box may have stood for hours, with the guard at work behind it.
  if (mainForm_.Status.Text() != saved) SaveLog();
  host_.loop.End(1);
}

}  // namespace tallowin
