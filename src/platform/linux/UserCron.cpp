#include "platform/linux/UserCron.h"

#include <unistd.h>

#include <algorithm>

namespace tallowin::platform::linux_host {
namespace {

constexpr std::chrono::seconds kAskAgain{60};
constexpr std::chrono::seconds kFirstRetry{1};

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
  const Clock::duration passed = Clock::now() - asked_;
  if (retry_.count() > 0) return passed > retry_;
  return !known_ || Stamps() != stamps_ || passed > (settled_ ? kAskAgain : kTickOfTheClock);
}

bool UserCron::Look(FolderWatch& /*watch*/, std::vector<AutostartEntry>& entries) {
  if (places_.crontabProgram.empty()) return true;
  if (HasChanged()) {
    // Taken before the question, so that a change in between is noticed at the next poll. A
    // program that does not answer is not asked again three times a second either.
    stamps_ = Stamps();
    asked_ = Clock::now();
    // A stamp in the future, of a clock that was set back, differs from that of the next change.
    const std::chrono::nanoseconds age = Age(stamps_.front());
    settled_ = age.count() < 0 || age > kTickOfTheClock;
    known_ = true;
    std::string table;
    if (program_.List(table)) {
      lines_ = RebootLines(table, TableOf::User);
      retry_ = {};
    } else {
      retry_ = std::clamp<std::chrono::seconds>(2 * retry_, kFirstRetry, kAskAgain);
    }
  }
  for (AutostartEntry& entry : CronEntries(TableName(), lines_, stamps_.front().changed)) {
    entries.push_back(std::move(entry));
  }
  return true;
}

RegistryResult UserCron::Undo(const AutostartEntry& entry) {
  known_ = false;
  retry_ = {};
  std::string table;
  if (!program_.List(table)) return registry::kWriteFault;
  const std::string remaining = WithoutLine(table, entry.line);
  if (remaining == table) return registry::kNotFound;
  const RegistryResult kept = copies_.Keep(TableName(), table);
  if (kept != registry::kSuccess) return kept;
  return program_.Install(remaining) ? registry::kSuccess : registry::kAccessDenied;
}

}  // namespace tallowin::platform::linux_host
