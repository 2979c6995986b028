// Files in the export formats of the registry editor.
#pragma once

#include <string>
#include <string_view>

#include "platform/Registry.h"
#include "platform/linux/RegistryNames.h"

namespace tallowin::platform::linux_host {

struct RegistryFileResult {
  bool ok = true;
  int line = 0;             ///< where the fault stands, from 1; 0 if it is not in a line
  std::string reason = {};  ///< no full stop, and nothing of the file in it
};

/// Reads "REGEDIT4" and "Windows Registry Editor Version 5.00", and carries out each statement as
/// it comes: at a fault, what stands before it has been imported and the rest is not.
[[nodiscard]] RegistryFileResult ImportRegistryFile(const std::string& path, Registry& registry);

/// The same for the content of a file.
[[nodiscard]] RegistryFileResult ImportRegistryText(std::string_view content, Registry& registry);

/// Writes the key with everything below it as version 5.00, UTF-16 with a byte order mark. The file
/// is replaced in one step, a device or a pipe is written into; at a failure an older file stays as
/// it was.
[[nodiscard]] RegistryFileResult ExportRegistryKey(const std::string& path,
                                                   const RegistryLocation& key, Registry& registry);

/// The same for all roots.
[[nodiscard]] RegistryFileResult ExportWholeRegistry(const std::string& path, Registry& registry);

/// How a failure of the registry is called in messages.
[[nodiscard]] std::string DescribeRegistryResult(RegistryResult result);

}  // namespace tallowin::platform::linux_host
