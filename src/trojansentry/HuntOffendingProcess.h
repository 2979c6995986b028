// The search for the running program behind a change, and its end.
#pragma once

#include <optional>
#include <string>

#include "analysis/ModList9x.h"
#include "analysis/ReadFile.h"
#include "analysis/TrojanDetect.h"
#include "core/MiscRoutines.h"
#include "forms/Questions.h"
#include "platform/Files.h"
#include "platform/Processes.h"

namespace tallowin::trojansentry {

/// Programs are known by what is in their files and not by their names. Every running program's
/// file is read whole each time, and nothing of it is kept.
class OffendingProcessHunt {
 public:
  struct Services {
    const core::MiscRoutines& misc;
    analysis::ReadFile& readFile;
    analysis::TrojanDetect& trojanDetect;
    analysis::ModList9x& modList9x;
    platform::Processes& processes;
    platform::Files& files;
    forms::Questions& questions;
  };
  explicit OffendingProcessHunt(const Services& services) : services_(services) {}

  /// Offers to end each process that runs a copy of `offendingFile`, a full path or nothing, and to
  /// delete the file that the process runs. Leaves `offendingFile` empty, but for two cases: there
  /// is no snapshot, or something failed, which a message box has told. Then the caller's next hunt
  /// for it starts anew.
  void HuntOffendingProcess(std::string& offendingFile);

 private:
  /// False if there is no snapshot to look at.
  bool Hunt(const std::string& offendingFile);
  /// Nothing where there is no such file, which then equals no other one.
  [[nodiscard]] std::optional<std::string> ChecksumOf(const std::string& path);
  void AskToKill(const platform::ProcessEntry& entry, const std::string& runningFile);
  [[nodiscard]] bool Confirmed(const char* text, const char* title);
  void TellError(const platform::RunTimeError& error);

  Services services_;
};

}  // namespace tallowin::trojansentry
