// The clock of this machine, by whoever may set it.
#pragma once

#include <ctime>
#include <functional>
#include <string>
#include <utility>

#include "platform/SystemClock.h"
#include "platform/linux/PrivilegedHelper.h"

namespace tallowin::platform::linux_host {

/// The system lets nobody but root set the clock. For others the helper does it, where it has been
/// given the right, or else the time service, where the administrator allows that without a
/// password: the clock is set by itself, with nobody there to type one. The service also refuses
/// while it keeps the clock right on its own.
class LinuxSystemClock : public SystemClock {
 public:
  /// Sets the clock; 0, or the system's error number.
  using Setter = std::function<int(const timespec& time)>;

  /// The system call. It needs the right, which most users do not have.
  static int SetRealTime(const timespec& time);

  /// `helper` must outlive it. `busAddress` names another bus than the system's. Tests hand in a
  /// setter of their own.
  explicit LinuxSystemClock(const PrivilegedHelper* helper, std::string busAddress = {},
                            Setter setter = SetRealTime)
      : helper_(helper), busAddress_(std::move(busAddress)), setter_(std::move(setter)) {}

  [[nodiscard]] std::int32_t TimeZoneBias() const override;
  void SetTime(std::chrono::seconds timeOfDay) override;
  void SetDate(std::chrono::year_month_day date) override;

 private:
  /// `wall` with the fraction of the second `nanoseconds` becomes the time.
  void Set(std::tm wall, long nanoseconds);
  /// 0, or the system's error number.
  [[nodiscard]] int SetByHelper(const timespec& time) const;
  [[nodiscard]] bool AskTimeService(const timespec& time) const;

  const PrivilegedHelper* helper_;  ///< null: there is none
  std::string busAddress_;
  Setter setter_;
};

}  // namespace tallowin::platform::linux_host
