// Processes as /proc shows them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Processes.h"

namespace tallowin::platform::linux_host {

class LinuxProcesses : public Processes {
 public:
  /// Another folder than /proc is for tests; processes in it are listed and never ended.
  explicit LinuxProcesses(std::string folder = "/proc") : folder_(std::move(folder)) {}

  /// Without kernel threads and without processes that have ended, or were killed and are about
  /// to, or wait for their parent to notice. A program that was deleted since it started keeps its
  /// path until another file goes by that; then it has its bare name alone.
  [[nodiscard]] std::optional<std::vector<ProcessEntry>> Snapshot() override;

  /// The files that are mapped to be executed. A deleted one keeps its path until another file goes
  /// by that; then it has the kernel's mark behind it.
  std::uint32_t Modules(std::uint32_t processId, std::vector<ModuleEntry>& modules) override;

  /// With SIGKILL, the one signal that cannot be refused.
  void Terminate(const ProcessEntry& entry) override;

 private:
  [[nodiscard]] std::string FolderOf(std::uint32_t processId) const;
  [[nodiscard]] std::optional<ProcessEntry> EntryOf(std::uint32_t processId) const;

  std::string folder_;
};

}  // namespace tallowin::platform::linux_host
