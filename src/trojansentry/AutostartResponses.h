// What the user is told and asked when an autostart place has changed.
#pragma once

#include <functional>

#include "core/INIFiles.h"
#include "core/TallowinModule.h"
#include "forms/Questions.h"
#include "trojansentry/AutostartPlaces.h"

namespace tallowin::trojansentry {

/// Means of the responses.
struct ResponseTools {
  forms::Questions& questions;
  core::INIFiles& iniFiles;
  const core::TallowinModule& module;
  std::function<void()> PlayTrojanDetected;
};

/// Asks about the value that is enumerated last in each key that has more values than its baseline,
/// and deletes it on Yes. Its text is left in OffendingFile, whatever the answer. The baselines
/// stay as they are.
void CheckRegistryAutostart(AutostartPlaces& places, const ResponseTools& tools);

/// The same for each INI line that differs from its baseline: Yes writes the old text back.
void CheckIniAutostart(AutostartPlaces& places, const ResponseTools& tools);

}  // namespace tallowin::trojansentry
