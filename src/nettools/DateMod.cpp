#include "nettools/DateMod.h"

#include <algorithm>
#include <array>

#include "core/MiscRoutines.h"
#include "core/VbRegMod.h"
#include "platform/RunTimeError.h"

namespace tallowin::nettools {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// From position `start`, counted from 1; what is not there is left out.
std::string_view Mid(std::string_view text, std::size_t start, std::size_t length) {
  return start > text.size() ? std::string_view() : text.substr(start - 1, length);
}

/// Throws 13 where there is no day.
std::string DateFromTimeText(std::string_view text) {
  constexpr std::size_t kMonthAt = 5;
  constexpr std::size_t kDayAt = 9;
  constexpr std::size_t kTimeAt = 11;
  constexpr std::size_t kYearLength = 4;
  constexpr std::size_t kTimeLength = 8;
  text = core::Trim(text);
  std::string month(Mid(text, kMonthAt, 3));
  if (std::ranges::find(kMonths, month) == kMonths.end()) month.clear();
  const int day = core::ToInteger(std::string(core::Trim(Mid(text, kDayAt, 2))));
  std::string date = (day < 10 ? "0" : "") + std::to_string(day) + "/" + month + "/";
  date.append(text.substr(text.size() - std::min(text.size(), kYearLength))).append(" ");
  date.append(Mid(text, kTimeAt, kTimeLength));
  return core::ReplaceAll(core::Trim(date), "  ", " ");
}

}  // namespace

std::string ParseTimeText(std::string_view text, core::StatusLog& log) {
  try {
    return DateFromTimeText(text);
  } catch (const platform::RunTimeError& error) {
    log.LogStatus(std::to_string(error.Number()) + " " + error.Description(), false);
    return {};
  }
}

}  // namespace tallowin::nettools
