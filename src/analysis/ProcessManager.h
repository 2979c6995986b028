// What the window of the process manager does.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/ModList9x.h"
#include "analysis/ProcessManFrm.h"
#include "analysis/TrojanDetect.h"
#include "core/MiscRoutines.h"
#include "core/StatusLog.h"
#include "core/TallowinModule.h"
#include "forms/Questions.h"
#include "platform/Files.h"
#include "platform/Processes.h"
#include "platform/RunTimeError.h"

namespace tallowin::analysis {

/// "08 Normal" for the base priority 8.
[[nodiscard]] std::string PriorityText(std::int32_t basePriority);

/// Lists change by a command or a click alone. Their errors are told: a file that
/// cannot be read for its rating must not end the guard.
class ProcessManager {
 public:
  struct Services {
    const core::MiscRoutines& misc;
    TrojanDetect& trojanDetect;
    ModList9x& modList9x;
    platform::Processes& processes;
    platform::Files& files;
    core::StatusLog& log;
    forms::Questions& questions;
  };
  ProcessManager(ProcessManFrm& form, const Services& services);

  /// Shows the window; if it was closed, as it is at first, with a new list of the processes.
  void Open();

  /// The first entry of the snapshot is left out.
  void GetProcessesIntoLV();
  /// The list is empty where the process has gone or lets nobody look.
  void ShowModulesOfProcess(std::int32_t processId);

 private:
  struct Rating {
    std::string suspicion;
    std::string virii;
  };
  /// A row of ProcView1. The entry tells the process from a later one of the same id.
  struct Process {
    platform::ProcessEntry entry;
    std::string path;
  };

  void Toolbar1_ButtonClick(const forms::ToolBarButton& button);
  void ProcView1_ItemClick(std::size_t row);
  void Run(const std::string& key);
  void ScanSelected();
  void Terminate();
  void TerminateAndDelete();
  void CopyToLog();

  void AddProcess(const platform::ProcessEntry& entry);
  void AddModule(const platform::ModuleEntry& module);
  void RateRow(forms::ListView& list, std::size_t row, std::size_t column, const unsigned& filling);
  [[nodiscard]] std::optional<Process> Selected() const;
  [[nodiscard]] Rating Rate(const std::string& path);
  void Delete(const std::string& path);
  [[nodiscard]] bool Confirmed(const std::string& text, const std::string& title);
  void LogList(const forms::ListView& list);
  void TellError(const platform::RunTimeError& error);

  ProcessManFrm& form_;
  Services services_;
  std::vector<platform::ProcessEntry> listed_;  ///< as the rows of ProcView1
  // How often each list was filled: the message loop runs while a file is rated, and what was being
  // filled may be another list behind it.
  unsigned processFillings_ = 0;
  unsigned moduleFillings_ = 0;
};

}  // namespace tallowin::analysis
