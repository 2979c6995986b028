// The files that the kernel shows of a process, read from their text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Processes.h"

namespace tallowin::platform::linux_host {

/// What /proc/ID/stat tells.
struct ProcessStatus {
  std::string name;  ///< what the process calls itself, 15 bytes at most; any bytes
  char state = '?';
  bool ended = false;  ///< or so near its end that it runs nothing of its program any more
  bool kernelThread = false;
  std::int32_t basePriority = 8;
  std::uint64_t startTime = 0;  ///< ticks since the machine started
};

/// Nothing if the text is not one.
[[nodiscard]] std::optional<ProcessStatus> ParseProcessStatus(std::string_view text);

/// 8 at nice 0, 4 at nice 19, 13 at nice -20, 24 for real time; idle processes have 4.
[[nodiscard]] std::int32_t BasePriority(int nice, int policy);

/// One line of /proc/ID/maps.
struct Mapping {
  std::uint64_t start = 0;
  std::uint64_t end = 0;
  std::uint64_t inode = 0;
  bool executable = false;
  /// As the kernel writes it, line ends as "\012"; empty where no file is mapped.
  std::string file;
};
[[nodiscard]] std::optional<Mapping> ParseMapping(std::string_view line);

/// What the kernel puts behind the name of a deleted file.
inline constexpr std::string_view kDeletedMark = " (deleted)";
/// `path` without that mark.
[[nodiscard]] std::string_view WithoutDeletedMark(std::string_view path);

}  // namespace tallowin::platform::linux_host
