// The units that a systemd manager starts because they were enabled.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/AutostartPlaces.h"
#include "platform/linux/AutostartSource.h"
#include "platform/linux/UndoneCopies.h"
#include "platform/linux/UnitSearch.h"

namespace tallowin::platform::linux_host {

/// One entry for each unit, however many links enable it, under the first of them: all have to go
/// so that it does not start again. A unit is enabled by a link in a folder ".wants", ".requires"
/// or ".upholds" of another unit, or by an alias that is a service, socket, timer or path. Masked
/// and missing units are left out.
class SystemdUnits final : public AutostartSource {
 public:
  /// All arguments but `meanings` outlive the source.
  SystemdUnits(const std::vector<UnitFolder>& places, UnitMeanings meanings,
               const UndoneCopies& copies)
      : search_(places, std::move(meanings)), copies_(copies) {}

  [[nodiscard]] bool Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) override;
  /// What `systemctl disable` does: the links are moved away. A unit that runs goes on running.
  [[nodiscard]] RegistryResult Undo(const AutostartEntry& entry) override {
    return copies_.MoveAway(entry.files);
  }

 private:
  struct Enabled {
    std::vector<std::string> links = {};
    std::int64_t changed = 0;
  };

  [[nodiscard]] bool LookForLinks(FolderWatch& watch);
  [[nodiscard]] bool LookIntoDependencies(const std::string& folder, const std::string& name);
  void AddLink(const std::string& name, const std::string& link);
  void AddEntries(std::vector<AutostartEntry>& entries);

  UnitSearch search_;
  const UndoneCopies& copies_;
  std::map<std::string, Enabled> enabled_;  // by the name of the unit
  std::set<std::string> masked_;            // dependencies that a link to nowhere takes back
};

}  // namespace tallowin::platform::linux_host
