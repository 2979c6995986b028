#include "platform/linux/ProcessFiles.h"

#include <sched.h>

#include <algorithm>
#include <array>
#include <csignal>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::uint64_t kKernelThreadFlag = 0x00200000;
constexpr std::uint64_t kExitingFlag = 0x00000004;

// Where the fields stand behind the name, the first of them being the state.
constexpr std::size_t kFlags = 6;
constexpr std::size_t kNice = 16;
constexpr std::size_t kStartTime = 19;
constexpr std::size_t kPending = 28;
constexpr std::size_t kPolicy = 38;

/// The number of the signal is that of its bit, counted from 1.
constexpr std::uint64_t kKillPending = std::uint64_t{1} << (SIGKILL - 1);

}  // namespace

std::int32_t BasePriority(int nice, int policy) {
  constexpr std::int32_t kIdle = 4;
  constexpr std::int32_t kOrdinary = 8;
  constexpr std::int32_t kRealTime = 24;
  constexpr int kSchedDeadline = 6;
  if (policy == SCHED_FIFO || policy == SCHED_RR || policy == kSchedDeadline) return kRealTime;
  if (policy == SCHED_IDLE) return kIdle;
  // 4 steps for 19 degrees of niceness, 5 steps for 20 of its opposite; both rounded.
  const int value = std::clamp(nice, -20, 19);
  return value >= 0 ? kOrdinary - (value * 8 + 19) / 38 : kOrdinary + (-value * 10 + 20) / 40;
}

std::optional<ProcessStatus> ParseProcessStatus(std::string_view text) {
  // The name stands in parentheses and may itself hold some: the last one ends it.
  const std::size_t open = text.find('(');
  const std::size_t close = text.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  if (text.ends_with('\n')) text.remove_suffix(1);
  const auto fields = Parts(text.substr(close + 1), ' ');
  if (fields.size() <= kPolicy || fields[0].size() != 1) return {};

  std::uint64_t flags = 0;
  std::uint64_t pending = 0;
  int nice = 0;
  int policy = 0;
  ProcessStatus status;
  if (!ReadNumber(fields[kFlags], flags) || !ReadNumber(fields[kNice], nice) ||
      !ReadNumber(fields[kStartTime], status.startTime) || !ReadNumber(fields[kPending], pending) ||
      !ReadNumber(fields[kPolicy], policy)) {
    return {};
  }
  status.name = text.substr(open + 1, close - open - 1);
  status.state = fields[0].front();
  status.ended = status.state == 'Z' || status.state == 'X' || (flags & kExitingFlag) != 0 ||
                 (pending & kKillPending) != 0;
  status.kernelThread = (flags & kKernelThreadFlag) != 0;
  status.basePriority = BasePriority(nice, policy);
  return status;
}

std::optional<Mapping> ParseMapping(std::string_view line) {
  // 7f12a000-7f12b000 r-xp 00001000 08:01 1234    /usr/lib/libname.so
  constexpr std::size_t kFieldsBeforePath = 5;
  std::array<std::string_view, kFieldsBeforePath> fields;
  for (std::string_view& field : fields) {
    const std::size_t end = std::min(line.find(' '), line.size());
    field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  // No file has such a name, and one that is looked for would be another one, the part before it.
  if (line.find('\0') != std::string_view::npos) return {};

  Mapping mapping;
  const std::size_t dash = fields[0].find('-');
  if (dash == std::string_view::npos || !ReadNumber(fields[0].substr(0, dash), mapping.start, 16) ||
      !ReadNumber(fields[0].substr(dash + 1), mapping.end, 16) ||
      !ReadNumber(fields[4], mapping.inode)) {
    return {};
  }
  mapping.executable = fields[1].size() > 2 && fields[1][2] == 'x';
  if (line.starts_with('/')) mapping.file = line;
  return mapping;
}

std::string_view WithoutDeletedMark(std::string_view path) {
  if (path.ends_with(kDeletedMark)) path.remove_suffix(kDeletedMark.size());
  return path;
}

}  // namespace tallowin::platform::linux_host
