// One kind of place from which this system starts programs, and what stands in it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Registry.h"
#include "platform/linux/FolderWatch.h"

namespace tallowin::platform::linux_host {

/// One thing that would be started.
struct AutostartEntry {
  std::string name = {};     ///< tells kind and file; no two entries of a source have the same
  std::string command = {};  ///< what would run; empty for a unit that runs no program
  std::int64_t changed = 0;  ///< when it came about, in nanoseconds, as far as the system tells
  std::vector<std::string> files = {};      ///< what makes it start: a file, links, or a table
  std::string line = {};                    ///< in a table: its line, as it stands there
  std::vector<std::string> unitFiles = {};  ///< of a unit: what it is read from, drop-ins and all

  friend bool operator==(const AutostartEntry&, const AutostartEntry&) = default;
};

class AutostartSource {
 public:
  virtual ~AutostartSource() = default;

  /// Adds what would be started now and names each folder that the answer depends on to `watch`.
  /// False if the system was short of something (descriptors, memory): nothing is known then, and
  /// what was seen at the last look stands.
  [[nodiscard]] virtual bool Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) = 0;

  /// For changes that no folder watch can tell of. Asked at each poll, so it has to be cheap.
  [[nodiscard]] virtual bool HasChanged() { return false; }

  /// Sees to it that the entry is not started again, and keeps a copy. kAccessDenied if the user
  /// may not do that; nothing is changed then.
  [[nodiscard]] virtual RegistryResult Undo(const AutostartEntry& entry) = 0;
};

}  // namespace tallowin::platform::linux_host
