#include "analysis/FileSizeText.h"

#include <array>

namespace tallowin::analysis {
namespace {

constexpr std::int64_t kKilobyte = 1024;
constexpr std::int64_t kMegabyte = kKilobyte * 1024;
constexpr std::int64_t kGigabyte = kMegabyte * 1024;

std::string Grouped(std::int64_t number, const platform::NumberMarks& marks) {
  std::string digits = std::to_string(number < 0 ? -number : number);
  for (std::size_t at = digits.size(); at > 3;) {
    at -= 3;
    digits.insert(at, marks.thousandsSeparator);
  }
  return (number < 0 ? "-" : "") + digits;
}

/// Halves are rounded up, in whole numbers, since a quotient of the machine's would round some of
/// them down.
std::string Quotient(std::int64_t size, std::int64_t unit, std::size_t decimals,
                     const platform::NumberMarks& marks) {
  const std::int64_t scale = decimals == 2 ? 100 : decimals == 1 ? 10 : 1;
  std::string digits = std::to_string((size * scale + unit / 2) / unit);
  if (decimals == 0) return digits;
  if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
  return digits.insert(digits.size() - decimals, marks.decimalPoint);
}

struct Step {
  std::int64_t below;  ///< in kilobytes, cut to a whole number
  std::int64_t unit;
  std::size_t decimals;
  const char* name;
};
constexpr std::array<Step, 7> kSteps = {{{10, kKilobyte, 2, "KB"},
                                         {100, kKilobyte, 1, "KB"},
                                         {1000, kKilobyte, 0, "KB"},
                                         {10000, kMegabyte, 2, "MB"},
                                         {100000, kMegabyte, 1, "MB"},
                                         {1000000, kMegabyte, 0, "MB"},
                                         {INT64_MAX, kGigabyte, 2, "GB"}}};

const Step& StepOf(std::int64_t kilobytes) {
  std::size_t step = 0;
  while (kilobytes >= kSteps.at(step).below) ++step;
  return kSteps.at(step);
}

}  // namespace

std::string FileSizeText(std::int32_t size, const platform::NumberMarks& marks) {
  std::string bytes = Grouped(size, marks) + " bytes";
  if (size < kKilobyte) return bytes;
  const Step& step = StepOf(size / kKilobyte);
  return Quotient(size, step.unit, step.decimals, marks) + step.name + " (" + bytes + ")";
}

}  // namespace tallowin::analysis
