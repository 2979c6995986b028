#include "platform/linux/LocaleDates.h"

#include <QDate>
#include <QStringList>
#include <algorithm>
#include <array>
#include <vector>

namespace tallowin::platform::linux_host {
namespace {

using std::chrono::local_days;
using std::chrono::local_seconds;

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

QString TimeFormat(const QLocale& locale) {
  return WithoutTimeZone(locale.timeFormat(QLocale::LongFormat));
}

/// The locale's short form with all digits of the year, the month in digits and no weekday.
QString NumericDateFormat(const QLocale& locale) {
  const QString shortForm = locale.dateFormat(QLocale::ShortFormat);
  QString format;
  bool quoted = false;
  for (qsizetype i = 0; i < shortForm.size();) {
    const QChar c = shortForm[i];
    qsizetype end = i + 1;
    while (end < shortForm.size() && shortForm[end] == c) ++end;
    QString part = shortForm.mid(i, end - i);
    if (c == QLatin1Char('\'') && part.size() % 2 == 1) quoted = !quoted;
    if (!quoted && c == QLatin1Char('y')) part = QStringLiteral("yyyy");
    if (!quoted && c == QLatin1Char('M')) part.truncate(2);
    if (!quoted && c == QLatin1Char('d') && part.size() > 2) part.clear();
    format += part;
    i = end;
  }
  return format;
}

/// 'd', 'M' and 'y' in the locale's order.
std::string OrderOfDate(const QLocale& locale) {
  std::string order;
  bool quoted = false;
  for (const QChar c : NumericDateFormat(locale)) {
    if (c == QLatin1Char('\'')) quoted = !quoted;
    const char letter = c.toLatin1();
    const bool isPart = letter == 'd' || letter == 'M' || letter == 'y';
    if (!quoted && isPart && order.find(letter) == std::string::npos) order += letter;
  }
  return order;
}

/// The numbers of a text, and what stands before, between and behind them.
struct Pieces {
  std::vector<int> numbers;
  QStringList gaps = {QString()};
};

constexpr std::size_t kNumbersInDate = 3;
constexpr std::size_t kNumbersInAll = 6;

/// Nothing for numbers that are part of no date.
std::optional<Pieces> TakeApart(const QString& text) {
  Pieces pieces;
  bool inNumber = false;
  for (const char32_t c : text.toStdU32String()) {
    const int digit = QChar::digitValue(c);
    if (digit < 0) {
      pieces.gaps.back() += QString::fromUcs4(&c, 1);
    } else {
      constexpr int kLargest = 9999;
      if (!inNumber) {
        pieces.numbers.push_back(0);
        pieces.gaps.emplace_back();
      }
      int& number = pieces.numbers.back();
      number = number * 10 + digit;
      if (number > kLargest || pieces.numbers.size() > kNumbersInAll) return std::nullopt;
    }
    inNumber = digit >= 0;
  }
  return pieces;
}

/// 1 to 12 for an English name of a month or its first three letters.
std::optional<int> EnglishMonth(const QString& word) {
  for (int month = 1; month <= 12; ++month) {
    const QString name = QLocale::c().monthName(month, QLocale::LongFormat);
    const bool same = word.compare(name, Qt::CaseInsensitive) == 0 ||
                      word.compare(name.left(3), Qt::CaseInsensitive) == 0;
    if (same) return month;
  }
  return std::nullopt;
}

/// Makes a number of an English month between the day and the year. False where there is none.
bool CountMonth(Pieces& pieces) {
  const QString gap = pieces.gaps.value(1);
  const bool separated =
      gap.size() > 2 && gap.front() == gap.back() && QStringLiteral("/-. ").contains(gap.front());
  const auto month = separated ? EnglishMonth(gap.mid(1, gap.size() - 2)) : std::nullopt;
  if (!month || pieces.numbers.size() == kNumbersInAll) return false;
  pieces.numbers.insert(pieces.numbers.begin() + 1, *month);
  pieces.gaps[1] = QStringLiteral("/");
  pieces.gaps.insert(1, QStringLiteral("/"));
  return true;
}

int YearOf(int number) {
  if (number >= 100) return number;
  return number < 30 ? 2000 + number : 1900 + number;
}

std::optional<local_days> DateOf(int year, int month, int day) {
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  return date.ok() ? std::optional(local_days(date)) : std::nullopt;
}

std::optional<local_days> ReadDateNumbers(const std::string& order,
                                          const std::vector<int>& numbers) {
  if (order.size() != kNumbersInDate) return std::nullopt;
  const auto part = [&](char letter) { return numbers[order.find(letter)]; };
  return DateOf(YearOf(part('y')), part('M'), part('d'));
}

enum class HalfOfDay { None, Morning, Afternoon };

/// Takes the word out of the text before or behind the time.
HalfOfDay TakeHalf(const QLocale& locale, QString& gap) {
  const bool twelveHours = TimeFormat(locale).contains(QLatin1Char('a'), Qt::CaseInsensitive);
  const QString morning = PlainBlanks(twelveHours ? locale.amText() : QStringLiteral("AM"));
  const QString afternoon = PlainBlanks(twelveHours ? locale.pmText() : QStringLiteral("PM"));
  const auto take = [&](const QString& mark) {
    const auto at = mark.isEmpty() ? -1 : gap.indexOf(mark, 0, Qt::CaseInsensitive);
    if (at >= 0) gap.remove(at, mark.size());
    return at >= 0;
  };
  // The longer one first, as it may have the other one in it.
  const bool afternoonFirst = afternoon.size() >= morning.size();
  if (afternoonFirst && take(afternoon)) return HalfOfDay::Afternoon;
  if (take(morning)) return HalfOfDay::Morning;
  return take(afternoon) ? HalfOfDay::Afternoon : HalfOfDay::None;
}

HalfOfDay TakeHalf(const QLocale& locale, Pieces& pieces) {
  if (pieces.numbers.size() <= kNumbersInDate) return HalfOfDay::None;
  const HalfOfDay before = TakeHalf(locale, pieces.gaps[kNumbersInDate]);
  return before == HalfOfDay::None ? TakeHalf(locale, pieces.gaps.back()) : before;
}

/// What the locale itself puts around the numbers.
QStringList GapsOf(const QLocale& locale) {
  using std::chrono::year;
  const local_seconds any = local_days(year(2026) / 11 / 5) + std::chrono::hours(9);
  auto pieces = TakeApart(QString::fromStdString(GeneralDateText(locale, any))).value_or(Pieces());
  TakeHalf(locale, pieces);
  return pieces.gaps;
}

/// Nothing but a date and a time stands there: what is no number separates, in the locale's way or
/// in the common one.
bool IsSeparated(const QStringList& gaps, const QStringList& own) {
  const auto last = gaps.size() - 1;
  for (qsizetype i = 0; i <= last; ++i) {
    const QString gap = gaps[i].trimmed();
    const bool inDate = i == 1 || i == 2;
    const bool inTime = i == 4 || i == 5;
    const bool common = i == last || (!inDate && !inTime) ? gap.isEmpty()
                        : inTime                          ? gap == QLatin1Char(':')
                                 : gap == gaps[3 - i].trimmed() && gap.size() == 1 &&
                                       QStringLiteral("/-.").contains(gap);
    const bool isCut = i == last && inTime && gap == QLatin1Char(':');
    if (!common && (isCut || gap != own.value(i).trimmed())) return false;
  }
  return true;
}

std::optional<std::chrono::seconds> ReadTimeNumbers(const std::vector<int>& numbers,
                                                    HalfOfDay half) {
  std::array<int, 3> parts = {};
  if (numbers.empty()) return std::chrono::seconds(0);
  if (numbers.size() == 1 || numbers.size() > parts.size()) return std::nullopt;
  std::ranges::copy(numbers, parts.begin());
  auto [hours, minutes, seconds] = parts;
  if (hours > 23 || minutes > 59 || seconds > 59) return std::nullopt;
  if (half != HalfOfDay::None && hours > 12) return std::nullopt;
  if (half == HalfOfDay::Morning && hours == 12) hours = 0;
  if (half == HalfOfDay::Afternoon && hours < 12) hours += 12;
  return std::chrono::hours(hours) + std::chrono::minutes(minutes) + std::chrono::seconds(seconds);
}

}  // namespace

QString PlainBlanks(QString text) {
  text.removeIf([](QChar c) { return c.category() == QChar::Other_Format; });
  for (QChar& c : text) {
    if (c.category() == QChar::Separator_Space) c = QLatin1Char(' ');
  }
  return text;
}

std::string WithPlainBlanks(const QString& text) {
  return PlainBlanks(text).trimmed().toStdString();
}

std::string DefaultTimeText(const QLocale& locale, QTime time) {
  return WithPlainBlanks(locale.toString(time, TimeFormat(locale)));
}

std::string GeneralDateText(const QLocale& locale, local_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const QDate shown(static_cast<int>(date.year()),
                    static_cast<int>(static_cast<unsigned>(date.month())),
                    static_cast<int>(static_cast<unsigned>(date.day())));
  const auto sinceMidnight = std::chrono::duration_cast<std::chrono::milliseconds>(time - day);
  return WithPlainBlanks(locale.toString(shown, NumericDateFormat(locale))) + " " +
         DefaultTimeText(locale,
                         QTime::fromMSecsSinceStartOfDay(static_cast<int>(sinceMidnight.count())));
}

std::optional<local_seconds> ReadGeneralDate(const QLocale& locale, std::string_view bytes) {
  const QString text =
      PlainBlanks(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())));
  auto pieces = TakeApart(text);
  if (!pieces) return std::nullopt;
  const std::string order = CountMonth(*pieces) ? "dMy" : OrderOfDate(locale);
  if (pieces->numbers.size() < kNumbersInDate) return std::nullopt;
  const HalfOfDay half = TakeHalf(locale, *pieces);
  if (!IsSeparated(pieces->gaps, GapsOf(locale))) return std::nullopt;
  const auto timeStart = pieces->numbers.begin() + kNumbersInDate;
  const auto date = ReadDateNumbers(order, pieces->numbers);
  const auto time = ReadTimeNumbers({timeStart, pieces->numbers.end()}, half);
  if (!date || !time) return std::nullopt;
  return *date + *time;
}

}  // namespace tallowin::platform::linux_host
