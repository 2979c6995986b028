#include "platform/linux/AvailableMemory.h"

#include <algorithm>
#include <fstream>

namespace tallowin::platform::linux_host {
namespace {

std::uint64_t OfMachine(const std::string& root) {
  std::ifstream lines(root + "/proc/meminfo");
  std::uint64_t kilobytes = 0;
  std::string name;
  std::string unit;
  for (std::uint64_t value = 0; lines >> name >> value && std::getline(lines, unit);) {
    if (name == "MemAvailable:" || name == "SwapFree:") kilobytes += value;
  }
  return lines.eof() && kilobytes > 0 ? kilobytes * 1024 : UINT64_MAX;
}

/// Empty where there are no groups of the second version.
std::string GroupOf(const std::string& root) {
  constexpr std::string_view kUnified = "0::";
  std::ifstream lines(root + "/proc/self/cgroup");
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(kUnified)) return line.substr(kUnified.size());
  }
  return {};
}

/// What files occupy in memory counts as used by the group, and is given up when it is needed.
std::uint64_t FileCacheOf(const std::string& group) {
  std::ifstream lines(group + "/memory.stat");
  std::uint64_t bytes = 0;
  std::string name;
  for (std::uint64_t value = 0; lines >> name >> value;) {
    if (name == "active_file" || name == "inactive_file") bytes += value;
  }
  return bytes;
}

std::uint64_t LeftIn(const std::string& group) {
  std::uint64_t limit = 0;
  std::uint64_t used = 0;
  // A group without a limit says "max", which is no number.
  if (!(std::ifstream(group + "/memory.max") >> limit)) return UINT64_MAX;
  if (!(std::ifstream(group + "/memory.current") >> used)) return UINT64_MAX;
  used -= std::min(used, FileCacheOf(group));
  return limit - std::min(limit, used);
}

}  // namespace

std::uint64_t AvailableMemory(const std::string& root) {
  std::uint64_t available = OfMachine(root);
  const std::string groups = root + "/sys/fs/cgroup";
  std::string group = GroupOf(root);
  while (group.starts_with('/')) {
    available = std::min(available, LeftIn(groups + group));
    // The group at the top comes last; in a container it is the one with the limit.
    if (group == "/") break;
    group.resize(std::max<std::size_t>(group.rfind('/'), 1));
  }
  return available;
}

}  // namespace tallowin::platform::linux_host
