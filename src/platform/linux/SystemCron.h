// What cron runs at boot by its system-wide tables.
#pragma once

#include <memory>

#include "platform/linux/AutostartPlaces.h"
#include "platform/linux/AutostartSource.h"
#include "platform/linux/CronTable.h"
#include "platform/linux/ParsedFiles.h"
#include "platform/linux/UndoneCopies.h"

namespace tallowin::platform::linux_host {

class SystemCron final : public AutostartSource {
 public:
  /// Both outlive the source.
  SystemCron(const AutostartPlaces& places, const UndoneCopies& copies)
      : places_(places), copies_(copies) {}

  [[nodiscard]] bool Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) override;
  /// The table is written anew without the line, after a copy of all of it was kept.
  [[nodiscard]] RegistryResult Undo(const AutostartEntry& entry) override;

 private:
  [[nodiscard]] bool LookInto(const std::string& table, std::vector<AutostartEntry>& entries);

  const AutostartPlaces& places_;
  const UndoneCopies& copies_;
  ParsedFiles<SystemTable> tables_{std::size_t{4} << 20U};
};

}  // namespace tallowin::platform::linux_host
