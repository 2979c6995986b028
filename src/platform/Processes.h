// The processes of this machine: which there are, what they have loaded, and their end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tallowin::platform {

struct ProcessEntry {
  std::uint32_t processId = 0;
  /// Tells a process from a later one of the same id; means nothing else.
  std::uint64_t startTime = 0;
  std::int32_t basePriority = 8;  ///< 8 is ordinary, 4 idle, 13 high, 24 real time
  /// The program, with a NUL behind it: its full path on hosts of the family whose entries carry it
  /// (platform/OperatingSystem.h) and where it may be known, otherwise its bare name.
  std::string exeFile;
};

struct ModuleEntry {
  std::uint64_t handle = 0;  ///< its base address
  std::string exePath;
};

namespace processes {
inline constexpr std::uint32_t kSuccess = 0;
inline constexpr std::uint32_t kAccessDenied = 5;
inline constexpr std::uint32_t kNoSuchProcess = 87;
}  // namespace processes

class Processes {
 public:
  virtual ~Processes() = default;

  /// The running processes, looked at one after the other. The first entry is the kernel itself,
  /// which has id 0 and no program. Nothing if the host cannot tell.
  [[nodiscard]] virtual std::optional<std::vector<ProcessEntry>> Snapshot() = 0;

  /// What the process has loaded, the program itself first, with full paths. On failure `modules`
  /// is left as it was, and the result is the system's number of the error.
  virtual std::uint32_t Modules(std::uint32_t processId, std::vector<ModuleEntry>& modules) = 0;

  /// Ends the process that `entry` was taken from, at once and without being asked; does not wait
  /// until it has gone. Does nothing where it has ended, even if another process has its id by now,
  /// and where the user may not end it. Never ends the kernel.
  virtual void Terminate(const ProcessEntry& entry) = 0;
};

}  // namespace tallowin::platform
