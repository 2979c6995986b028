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
  bool executable = false;
  std::string file;  ///< empty where no file is mapped
};
[[nodiscard]] std::optional<Mapping> ParseMapping(std::string_view line);

/// The kernel writes a line end in the path of a mapping, and nothing else, as a number.
[[nodiscard]] std::string WithNewlines(std::string_view path);

/// `path` without the mark that the kernel puts behind the name of a deleted file.
[[nodiscard]] std::string_view WithoutDeletedMark(std::string_view path);

}  // namespace tallowin::platform::linux_host
