// What the watch knows of the six places from which programs are started with the system.
#pragma once

#include <string>

#include "trojansentry/CReadWriteEasyReg.h"

namespace tallowin::trojansentry {

/// "Current" is what was read last, "Baseline" what the watch has accepted. The lists are those of
/// CReadWriteEasyReg::GetAllValues; the texts are lines of INI files. Each question of the watch
/// lets events run, and one of them may stop the watch or start it anew, so that everything here
/// may be another thing behind it.
struct AutostartPlaces {
  AutostartPlaces(platform::Registry& registry, forms::Questions& questions)
      : MachineRunReader(registry, questions),
        MachineServicesReader(registry, questions),
        UserRunReader(registry, questions) {}

  CReadWriteEasyReg MachineRunReader;
  CReadWriteEasyReg MachineServicesReader;
  CReadWriteEasyReg UserRunReader;

  VariantArray CurrentMachineRun;
  VariantArray CurrentMachineServices;
  VariantArray CurrentUserRun;
  VariantArray BaselineMachineRun;
  VariantArray BaselineMachineServices;
  VariantArray BaselineUserRun;

  std::string CurrentShell;
  std::string CurrentRunLine;
  std::string CurrentLoadLine;
  std::string BaselineShell;
  std::string BaselineRunLine;
  std::string BaselineLoadLine;

  /// The program named by the last change that a tick has seen, for the hunt.
  std::string OffendingFile;
};

}  // namespace tallowin::trojansentry
