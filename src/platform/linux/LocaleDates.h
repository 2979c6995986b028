// Dates and times in the forms of a locale, and reading them back.
#pragma once

#include <QLocale>
#include <QString>
#include <QTime>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// Locales put narrow and no-break blanks before "PM" and between the parts of a date. In a log and
/// in file names they only look like blanks. Marks that order text have no place in either.
[[nodiscard]] QString PlainBlanks(QString text);
[[nodiscard]] std::string WithPlainBlanks(const QString& text);

/// With the seconds, and without the time zone.
[[nodiscard]] std::string DefaultTimeText(const QLocale& locale, QTime time);

/// RegionalSettings::GeneralDate and ReadDate, for any locale.
[[nodiscard]] std::string GeneralDateText(const QLocale& locale, std::chrono::local_seconds time);
[[nodiscard]] std::optional<std::chrono::local_seconds> ReadGeneralDate(const QLocale& locale,
                                                                        std::string_view text);

}  // namespace tallowin::platform::linux_host
