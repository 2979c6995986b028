#include "platform/linux/LinuxSystemClock.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/RunTimeError.h"
#include "platform/linux/SystemBus.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::chrono::seconds kLimitOfService{5};
constexpr int kSecondsPerMinute = 60;

timespec RealTime() {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

std::tm OnTheWall(std::time_t time) {
  std::tm wall = {};
  tzset();  // localtime_r alone would keep the time zone of the program's start.
  localtime_r(&time, &wall);
  return wall;
}

/// In seconds east of UTC, within the year before `now` (`direction` -1) or behind it (1).
long LeastOffset(std::time_t now, std::time_t direction) {
  constexpr std::time_t kWeek = std::time_t{7} * 24 * 60 * 60;
  constexpr std::time_t kWeeks = 53;
  long least = std::numeric_limits<long>::max();
  for (std::time_t week = 0; week < kWeeks; ++week) {
    least = std::min(least, OnTheWall(now + direction * week * kWeek).tm_gmtoff);
  }
  return least;
}

}  // namespace

int LinuxSystemClock::SetRealTime(const timespec& time) {
  return clock_settime(CLOCK_REALTIME, &time) == 0 ? 0 : errno;
}

std::int32_t LinuxSystemClock::TimeZoneBias() const {
  // The mark of summer time is no help: some zones count their summer as standard and put the clock
  // back in winter. Standard is what the clock shows while it is not put forward. A zone that gives
  // up its standard time for good has done so in only one of the two years around now.
  const std::time_t now = RealTime().tv_sec;
  const long standard = std::max(LeastOffset(now, -1), LeastOffset(now, 1));
  return static_cast<std::int32_t>(-standard / kSecondsPerMinute);
}

void LinuxSystemClock::SetTime(std::chrono::seconds timeOfDay) {
  std::tm wall = OnTheWall(RealTime().tv_sec);
  const std::chrono::hh_mm_ss parts(timeOfDay);
  wall.tm_hour = static_cast<int>(parts.hours().count());
  wall.tm_min = static_cast<int>(parts.minutes().count());
  wall.tm_sec = static_cast<int>(parts.seconds().count());
  Set(wall, 0);
}

void LinuxSystemClock::SetDate(std::chrono::year_month_day date) {
  constexpr int kFirstYear = 1900;
  const timespec now = RealTime();
  std::tm wall = OnTheWall(now.tv_sec);
  wall.tm_year = static_cast<int>(date.year()) - kFirstYear;
  wall.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  wall.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  Set(wall, now.tv_nsec);
}

void LinuxSystemClock::Set(std::tm wall, long nanoseconds) {
  wall.tm_isdst = -1;
  const timespec time = {.tv_sec = mktime(&wall), .tv_nsec = nanoseconds};
  int failure = setter_(time);
  if (failure == EPERM) failure = SetByHelper(time);
  if (failure == EINVAL) {
    throw RunTimeError(error::kInvalidProcedureCall, "Invalid procedure call or argument");
  }
  if (failure == 0 || AskTimeService(time)) return;
  throw RunTimeError(error::kPermissionDenied, "Permission denied");
}

int LinuxSystemClock::SetByHelper(const timespec& time) const {
  if (helper_ == nullptr) return EPERM;
  return helper_->SetClock(std::chrono::system_clock::time_point(
      std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec)));
}

bool LinuxSystemClock::AskTimeService(const timespec& time) const {
  constexpr bool kRelative = false;
  constexpr bool kAskForPassword = false;
  constexpr qlonglong kMicroseconds = 1000000;
  auto call =
      QDBusMessage::createMethodCall("org.freedesktop.timedate1", "/org/freedesktop/timedate1",
                                     "org.freedesktop.timedate1", "SetTime");
  call << (qlonglong{time.tv_sec} * kMicroseconds + time.tv_nsec / 1000) << kRelative
       << kAskForPassword;
  return SystemBus(busAddress_, kLimitOfService).Call(call).type() == QDBusMessage::ReplyMessage;
}

}  // namespace tallowin::platform::linux_host
