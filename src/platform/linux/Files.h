// What several facilities do with files and folders.
#pragma once

#include <string>

namespace tallowin::platform::linux_host {

/// True if something has this name, also a link that leads nowhere.
[[nodiscard]] bool NameExists(const std::string& path);

/// Makes the folder and those above it, for this user alone. A failure shows when something in the
/// folder is opened.
void MakePrivateFolders(const std::string& folder);

}  // namespace tallowin::platform::linux_host
