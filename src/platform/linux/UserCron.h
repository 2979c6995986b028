// What cron runs at boot by the table of this user.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/linux/AutostartPlaces.h"
#include "platform/linux/AutostartSource.h"
#include "platform/linux/CronTable.h"
#include "platform/linux/CrontabProgram.h"
#include "platform/linux/ForeignFiles.h"
#include "platform/linux/UndoneCopies.h"

namespace tallowin::platform::linux_host {

/// To ask the program takes milliseconds. But the folder of all tables, which users may not read,
/// shows by its time that one of them was replaced; the program is asked only then, and once a
/// minute in case a table was written in place.
class UserCron final : public AutostartSource {
 public:
  /// Both outlive the source.
  UserCron(const AutostartPlaces& places, const UndoneCopies& copies)
      : places_(places), copies_(copies), program_(places.crontabProgram) {}

  [[nodiscard]] bool Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) override;
  [[nodiscard]] bool HasChanged() override;
  [[nodiscard]] RegistryResult Undo(const AutostartEntry& entry) override;

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] std::vector<FileStamp> Stamps() const;
  [[nodiscard]] std::string TableName() const;

  const AutostartPlaces& places_;
  const UndoneCopies& copies_;
  CrontabProgram program_;
  bool known_ = false;
  bool settled_ = true;
  std::chrono::seconds retry_ = {};  // how long to wait after a failure; none if it answered
  std::vector<FileStamp> stamps_;
  Clock::time_point asked_ = {};
  std::vector<RebootLine> lines_;
};

}  // namespace tallowin::platform::linux_host
