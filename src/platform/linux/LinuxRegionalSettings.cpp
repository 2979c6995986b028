#include "platform/linux/LinuxRegionalSettings.h"

#include <QDate>
#include <QLocale>
#include <QTime>
#include <algorithm>

#include "platform/RunTimeError.h"
#include "platform/linux/LocaleDates.h"

namespace tallowin::platform::linux_host {
namespace {

QDate DateOf(const std::tm& local) {
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

/// Second 60 is a leap second, which the forms do not know.
QTime TimeOf(const std::tm& local) {
  return {local.tm_hour, local.tm_min, std::min(local.tm_sec, 59)};
}

std::string TwelveHourForm(const QLocale& locale, const QTime& time) {
  const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
  const QString digits = QString::asprintf("%02d:%02d:%02d ", hour, time.minute(), time.second());
  return WithPlainBlanks(digits + (time.hour() < 12 ? locale.amText() : locale.pmText()));
}

}  // namespace

const LinuxRegionalSettings::Texts& LinuxRegionalSettings::TextsOf(TimePoint time) const {
  const std::time_t second =
      std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
  if (second == texts_.second && !texts_.longDate.empty()) return texts_;

  tzset();  // localtime_r alone would keep the time zone of the program's start.
  std::tm local = {};
  if (localtime_r(&second, &local) == nullptr) return texts_ = {};
  const QLocale locale = QLocale::system();
  const QDate date = DateOf(local);
  if (texts_.longDate.empty() || date != DateOf(texts_.local)) {
    texts_.longDate = WithPlainBlanks(locale.toString(date, QLocale::LongFormat));
    texts_.shortDate = WithPlainBlanks(locale.toString(date, QLocale::ShortFormat));
  }
  texts_.defaultTime = DefaultTimeText(locale, TimeOf(local));
  texts_.twelveHourTime = TwelveHourForm(locale, TimeOf(local));
  texts_.local = local;
  texts_.second = second;
  return texts_;
}

std::string LinuxRegionalSettings::LongDate(TimePoint time) const { return TextsOf(time).longDate; }

std::string LinuxRegionalSettings::ShortDate(TimePoint time) const {
  return TextsOf(time).shortDate;
}

std::string LinuxRegionalSettings::DefaultTime(TimePoint time) const {
  return TextsOf(time).defaultTime;
}

std::string LinuxRegionalSettings::TwelveHourTime(TimePoint time) const {
  return TextsOf(time).twelveHourTime;
}

RegionalSettings::WallTime LinuxRegionalSettings::ToWallTime(TimePoint time) const {
  const std::tm& local = TextsOf(time).local;
  const std::chrono::year_month_day date{
      std::chrono::year(local.tm_year + 1900),
      std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)),
      std::chrono::day(static_cast<unsigned>(local.tm_mday))};
  return std::chrono::local_days(date) + std::chrono::hours(local.tm_hour) +
         std::chrono::minutes(local.tm_min) + std::chrono::seconds(local.tm_sec);
}

std::string LinuxRegionalSettings::GeneralDate(WallTime time) const {
  return GeneralDateText(QLocale::system(), time);
}

RegionalSettings::WallTime LinuxRegionalSettings::ReadDate(std::string_view text) const {
  const auto time = ReadGeneralDate(QLocale::system(), text);
  if (!time) throw RunTimeError(error::kTypeMismatch, "Type mismatch");
  return *time;
}

NumberMarks LinuxRegionalSettings::Numbers() const {
  const QLocale locale = QLocale::system();
  return {.decimalPoint = PlainBlanks(locale.decimalPoint()).toStdString(),
          .thousandsSeparator = PlainBlanks(locale.groupSeparator()).toStdString()};
}

}  // namespace tallowin::platform::linux_host
