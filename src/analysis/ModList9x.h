// What the process manager and the hunt for a program share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/MiscRoutines.h"
#include "core/TallowinModule.h"
#include "platform/Processes.h"

namespace tallowin::analysis {

/// What stands in front of the first NUL. Without one it is nothing, and not the text itself.
[[nodiscard]] std::string TrimAtNull(std::string_view text);

class ModList9x {
 public:
  ModList9x(platform::Processes& processes, const core::TallowinModule& module,
            const core::MiscRoutines& misc)
      : processes_(processes), module_(module), misc_(misc) {}

  /// The program of a process on hosts whose snapshots do not carry it; "System" for the system's
  /// own process, "Error" where it cannot be told. A process that refuses access is taken for the
  /// client/server run-time process.
  [[nodiscard]] std::string ProcessPathFromId(std::uint32_t processId);

  /// The program of a process, in the way of this host's family. Not always a full path.
  [[nodiscard]] std::string ProgramOf(const platform::ProcessEntry& entry);

  /// False for a bare name and for a pattern. A process may be called as its user likes: that must
  /// not lead to files below the current folder, nor to those that a wildcard finds.
  [[nodiscard]] bool NamesOneFile(const std::string& path) const;

  /// The id alone would not do: it may be another process's by now. The outcome is not told.
  void KillProcessById(const platform::ProcessEntry& entry) { processes_.Terminate(entry); }

 private:
  platform::Processes& processes_;
  const core::TallowinModule& module_;
  const core::MiscRoutines& misc_;
};

}  // namespace tallowin::analysis
