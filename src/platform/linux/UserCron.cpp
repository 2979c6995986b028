#include "platform/linux/UserCron.h"

#include <unistd.h>

namespace tallowin::platform::linux_host {
namespace {

constexpr std::chrono::seconds kAskAgain{60};

/// The time of a folder moves in ticks: within the present one, another change would not show.
constexpr std::chrono::milliseconds kTickOfTheClock{100};

std::chrono::nanoseconds Age(const FileStamp& stamp) {
  return std::chrono::system_clock::now().time_since_epoch() -
         std::chrono::nanoseconds(stamp.changed);
}

}  // namespace

std::string UserCron::TableName() const { return places_.userTables + "/" + places_.userName; }

/// Of the folder, and of the table where it can be seen.
std::vector<FileStamp> UserCron::Stamps() const {
  return {StampOfName(places_.userTables), StampOfName(TableName())};
}

bool UserCron::HasChanged() {
  if (places_.crontabProgram.empty()) return false;
  return !known_ || Stamps() != stamps_ ||
         Clock::now() - asked_ > (settled_ ? kAskAgain : kTickOfTheClock);
}

bool UserCron::Look(FolderWatch& /*watch*/, std::vector<AutostartEntry>& entries) {
  if (places_.crontabProgram.empty()) return true;
  if (HasChanged()) {
    // Taken before the question, so that a change in between is noticed at the next poll. A
    // program that does not answer is not asked again three times a second either.
    stamps_ = Stamps();
    asked_ = Clock::now();
    settled_ = Age(stamps_.front()) > kTickOfTheClock;
    known_ = true;
    std::string table;
    if (program_.List(table)) lines_ = RebootLines(table, TableOf::User);
  }
  for (AutostartEntry& entry : CronEntries(TableName(), lines_, stamps_.front().changed)) {
    entries.push_back(std::move(entry));
  }
  return true;
}

RegistryResult UserCron::Undo(const AutostartEntry& entry) {
  known_ = false;
  std::string table;
  if (!program_.List(table)) return registry::kWriteFault;
  const std::string remaining = WithoutLine(table, entry.line);
  if (remaining == table) return registry::kNotFound;
  const RegistryResult kept = copies_.Keep(TableName(), table);
  if (kept != registry::kSuccess) return kept;
  return program_.Install(remaining) ? registry::kSuccess : registry::kAccessDenied;
}

}  // namespace tallowin::platform::linux_host
