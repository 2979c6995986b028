// What several facilities do with files and folders.
#pragma once

#include <string>
#include <string_view>

namespace tallowin::platform::linux_host {

/// True if something has this name, also a link that leads nowhere.
[[nodiscard]] bool NameExists(const std::string& path);

/// Makes the folder and those above it, for this user alone. A failure shows when something in the
/// folder is opened.
void MakePrivateFolders(const std::string& folder);

/// All of it, durably. False, with the reason in errno, if that is not possible.
[[nodiscard]] bool WriteWhole(int descriptor, std::string_view text);

/// In one step: whoever opens `path` finds the old text or the new one, also after a crash. The new
/// file has owner and rights of the old one, or is for this user alone. In between, a file stands
/// beside it whose name begins with a dot. Zero, or the number of the system's error.
[[nodiscard]] int ReplaceFile(const std::string& path, std::string_view text);

}  // namespace tallowin::platform::linux_host
