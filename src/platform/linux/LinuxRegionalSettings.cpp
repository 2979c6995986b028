#include "platform/linux/LinuxRegionalSettings.h"

#include <QDate>
#include <QLocale>
#include <QTime>
#include <algorithm>

namespace tallowin::platform::linux_host {
namespace {

/// Locales put narrow and no-break blanks before "PM" and between the parts of a date. In a log and
/// in file names they only look like blanks. Marks that order text have no place in either.
std::string WithPlainBlanks(QString text) {
  text.removeIf([](QChar c) { return c.category() == QChar::Other_Format; });
  for (QChar& c : text) {
    if (c.category() == QChar::Separator_Space) c = QLatin1Char(' ');
  }
  return text.trimmed().toStdString();
}

/// The locale's form without the time zone, which stands as "t", at times in brackets.
QString WithoutTimeZone(const QString& format) {
  QString kept;
  bool quoted = false;
  for (const QChar c : format) {
    if (c == QLatin1Char('\'')) quoted = !quoted;
    if (quoted || !QStringLiteral("t()[]").contains(c)) kept += c;
  }
  return kept.trimmed();
}

QDate DateOf(const std::tm& local) {
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

/// Second 60 is a leap second, which the forms do not know.
QTime TimeOf(const std::tm& local) {
  return {local.tm_hour, local.tm_min, std::min(local.tm_sec, 59)};
}

std::string DefaultForm(const QLocale& locale, const QTime& time) {
  const QString format = WithoutTimeZone(locale.timeFormat(QLocale::LongFormat));
  return WithPlainBlanks(locale.toString(time, format));
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
  if (localtime_r(&second, &local) == nullptr) return texts_;
  const QLocale locale = QLocale::system();
  const QDate date = DateOf(local);
  if (texts_.longDate.empty() || date != DateOf(texts_.local)) {
    texts_.longDate = WithPlainBlanks(locale.toString(date, QLocale::LongFormat));
    texts_.shortDate = WithPlainBlanks(locale.toString(date, QLocale::ShortFormat));
  }
  texts_.defaultTime = DefaultForm(locale, TimeOf(local));
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

}  // namespace tallowin::platform::linux_host
