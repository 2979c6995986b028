#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/linux/LinuxSystemClock.h"
#include "platform/linux/LocaleDates.h"

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::year;

/// Nothing here sets a clock: what would be set is noted.
struct LinuxSystemClockTest : testing::Test {
  timespec noted{};
  LinuxSystemClock clock{nullptr, "unix:path=/nowhere", [this](const timespec& time) {
                           noted = time;
                           return 0;
                         }};

  ~LinuxSystemClockTest() override {
    unsetenv("TZ");
    tzset();
  }
  static void SetZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
  static std::tm Wall(std::time_t time) {
    std::tm wall{};
    localtime_r(&time, &wall);
    return wall;
  }
  static std::chrono::seconds TimeOfDay(std::time_t time) {
    const std::tm wall = Wall(time);
    return std::chrono::hours(wall.tm_hour) + std::chrono::minutes(wall.tm_min) +
           std::chrono::seconds(wall.tm_sec);
  }
};

TEST_F(LinuxSystemClockTest, TimeAndDateAreThoseOnTheWall) {
  // Summer all the year but for an hour.
  SetZone("AAA-3BBB,0/0,J365/25");
  clock.SetTime(23h + 4min + 5s);
  EXPECT_EQ(TimeOfDay(noted.tv_sec), 23h + 4min + 5s);
  EXPECT_EQ(noted.tv_nsec, 0);
  // Not std::time: that one may be some milliseconds behind.
  const auto now = [] {
    return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  };
  const std::time_t before = now();
  clock.SetDate(std::chrono::year(2031) / 2 / 28);
  const std::time_t after = now();
  EXPECT_EQ(Wall(noted.tv_sec).tm_year, 131);
  EXPECT_EQ(Wall(noted.tv_sec).tm_mon, 1);
  EXPECT_EQ(Wall(noted.tv_sec).tm_mday, 28);
  if (TimeOfDay(before) <= TimeOfDay(after)) {  // no midnight in between
    EXPECT_GE(TimeOfDay(noted.tv_sec), TimeOfDay(before)) << "the time of day goes on";
    EXPECT_LE(TimeOfDay(noted.tv_sec), TimeOfDay(after));
  }
}

TEST(LocaleDates, EveryLocaleReadsBackWhatItWrites) {
  const auto locales =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
  ASSERT_GT(locales.size(), 300);
  for (const local_seconds time : std::vector<local_seconds>{
           local_days(year(2026) / 11 / 5) + 0h + 4min + 9s, local_days(year(1999) / 2 / 3) + 12h,
           local_days(year(2031) / 12 / 31) + 23h + 59min + 58s}) {
    for (const QLocale& locale : locales) {
      const std::string text = GeneralDateText(locale, time);
      const auto read = ReadGeneralDate(locale, text);
      EXPECT_TRUE(read == time) << locale.name().toStdString() << " " << text;
    }
  }
}

TEST(LocaleDates, ReadsEnglishMonthsEverywhereAndNothingElse) {
  for (const char* name : {"C", "en_US", "de_DE", "ar_EG", "ja_JP", "zh_TW"}) {
    const QLocale locale{QString(name)};
    const auto read = [&](const char* text) { return ReadGeneralDate(locale, text); };
    EXPECT_EQ(read("05/Nov/2026 12:34:56"), local_days(year(2026) / 11 / 5) + 12h + 34min + 56s);
    EXPECT_EQ(read("20/Nov/2026 12:34:5"), local_days(year(2026) / 11 / 20) + 12h + 34min + 5s);
    EXPECT_EQ(read(" 5-november-2026  1:02 "), local_days(year(2026) / 11 / 5) + 1h + 2min);
    for (const char* text :
         {"", "05//2026 12:34:56", "30/Feb/2026 12:34:56", "00/Nov/2026 12:34:56",
          "05/Nov/2026 24:00:00", "05/Nov/2026 1:2:3:4", "05/Nov/99999999999999999999 1:2:3",
          "\xff\xfe", "12x34x56", "-5/11/2026", "05/Nov-2026", "05/Novel/2026", "x 05/Nov/2026",
          "05/Nov/2026 12:34:", "05/Nov/2026 AM", "1/2-2026", "1/2/2026 12;34"}) {
      EXPECT_FALSE(read(text).has_value()) << name << " " << text;
    }
  }
}

}  // namespace
}  // namespace tallowin::platform::linux_host
