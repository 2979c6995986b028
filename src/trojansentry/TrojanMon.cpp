#include "trojansentry/TrojanMon.h"

#include <chrono>
#include <utility>

namespace tallowin::trojansentry {

namespace {

using platform::RegistryRoot;

constexpr std::chrono::milliseconds kInterval{300};
constexpr const char* kRun = R"(Software\Microsoft\Windows\CurrentVersion\Run)";
constexpr const char* kRunServices = R"(Software\Microsoft\Windows\CurrentVersion\RunServices)";

/// The names in a key; no array where it has none or is closed.
VariantArray ValueNames(const CReadWriteEasyReg& reader) {
  EasyRegVariant names = reader.GetAllValues();
  if (auto* array = std::get_if<VariantArray>(&names)) return std::move(*array);
  return std::nullopt;
}

}  // namespace

TrojanMon::TrojanMon(const Host& host, const core::TallowinModule& module, core::StatusLog& log,
                     forms::Questions& questions, Actions actions)
    : registry_(host.registry),
      iniFiles_(host.iniFiles),
      routines_(host.paths, host.loop),
      module_(module),
      log_(log),
      places_(host.registry, questions),
      tools_{questions, iniFiles_, module, std::move(actions.PlayTrojanDetected)},
      huntOffendingProcess_(std::move(actions.HuntOffendingProcess)),
      trojanTimer_(host.loop.MakeTimer(kInterval, [this] { TrojanTimer_Timer(); })) {}

bool TrojanMon::OpenAutostartKeys() {
  registry_.EnsureRegKey(RegistryRoot::LocalMachine, kRun);
  registry_.EnsureRegKey(RegistryRoot::LocalMachine, kRunServices);
  registry_.EnsureRegKey(RegistryRoot::CurrentUser, kRun);
  bool allOpen = true;
  if (!places_.MachineRunReader.OpenRegistry(RegistryRoot::LocalMachine, kRun)) allOpen = false;
  if (!places_.MachineServicesReader.OpenRegistry(RegistryRoot::LocalMachine, kRunServices)) {
    allOpen = false;
  }
  if (!places_.UserRunReader.OpenRegistry(RegistryRoot::CurrentUser, kRun)) allOpen = false;
  return allOpen;
}

void TrojanMon::StartTrojanSentry() {
  if (!OpenAutostartKeys()) {
    StopTrojanSentry();
    return;
  }
  EnumerateCurrent();
  EnumerateBaseline();
  std::string folder = module_.GetWindowsFolder();
  core::AddBackslash(folder, module_.Separator());
  ReadIniLines(folder + "system.ini", folder + "win.ini");
  AcceptIniLines();
  trojanTimer_->SetEnabled(true);
  log_.LogStatus("Trojan Sentry Activated", true);
}

void TrojanMon::StopTrojanSentry() {
  trojanTimer_->SetEnabled(false);
  for (VariantArray* list :
       {&places_.CurrentMachineRun, &places_.CurrentMachineServices, &places_.CurrentUserRun,
        &places_.BaselineMachineRun, &places_.BaselineMachineServices, &places_.BaselineUserRun}) {
    list->emplace(1);
  }
  places_.MachineRunReader.CloseRegistry();
  places_.MachineServicesReader.CloseRegistry();
  places_.UserRunReader.CloseRegistry();
  log_.LogStatus("Trojan Sentry Deactivated", true);
}

void TrojanMon::TrojanTimer_Timer() {
  EnumerateCurrent();
  ReadIniLines(module_.SystemIniPath, module_.WinIniPath);
  CheckRegistryAutostart(places_, tools_);
  CheckIniAutostart(places_, tools_);
  places_.OffendingFile = routines_.FindOnPath(places_.OffendingFile);
  huntOffendingProcess_(places_.OffendingFile);
  // Whatever was answered: what is there at the end of a tick is accepted, and so is what came
  // while the user was being asked. Each change is told of once.
  EnumerateCurrent();
  EnumerateBaseline();
  ReadIniLines(module_.SystemIniPath, module_.WinIniPath);
  AcceptIniLines();
}

void TrojanMon::EnumerateCurrent() {
  places_.CurrentMachineRun = ValueNames(places_.MachineRunReader);
  places_.CurrentMachineServices = ValueNames(places_.MachineServicesReader);
  places_.CurrentUserRun = ValueNames(places_.UserRunReader);
}

void TrojanMon::EnumerateBaseline() {
  places_.BaselineMachineRun = ValueNames(places_.MachineRunReader);
  places_.BaselineMachineServices = ValueNames(places_.MachineServicesReader);
  places_.BaselineUserRun = ValueNames(places_.UserRunReader);
}

void TrojanMon::ReadIniLines(const std::string& systemIni, const std::string& winIni) {
  places_.CurrentShell = iniFiles_.ReadIni(systemIni, "boot", "shell");
  places_.CurrentRunLine = iniFiles_.ReadIni(winIni, "windows", "run");
  places_.CurrentLoadLine = iniFiles_.ReadIni(winIni, "windows", "load");
}

void TrojanMon::AcceptIniLines() {
  places_.BaselineShell = places_.CurrentShell;
  places_.BaselineRunLine = places_.CurrentRunLine;
  places_.BaselineLoadLine = places_.CurrentLoadLine;
}

}  // namespace tallowin::trojansentry
