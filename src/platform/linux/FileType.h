// What the desktop calls the type of a file.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/FileFacts.h"

namespace tallowin::platform::linux_host {

struct FileType {
  std::string name;  ///< in the user's language; empty where the type is not known
  FileIcon icon;
};

/// By the name and, of an ordinary file, by what is at its start, which need not be readable.
/// `mode` is the file's as stat tells it, or that of a link which leads nowhere.
[[nodiscard]] FileType TypeOfFile(const std::string& path, mode_t mode);

}  // namespace tallowin::platform::linux_host
