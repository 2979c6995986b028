#include "platform/linux/OwnAutostart.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tallowin::platform::linux_host {

namespace fs = std::filesystem;

OwnAutostart OwnAutostart::Of(const std::string& executables) {
  const fs::path folder(executables);
  return {.commands = {folder / "tallowin", folder / "tallowin-console"},
          .unit = folder.parent_path() / "lib/systemd/user/tallowin-console.service"};
}

bool OwnAutostart::Covers(const AutostartEntry& entry) const {
  if (std::ranges::find(commands, entry.command) == commands.end()) return false;
  const auto isDesktopEntry = [](const std::string& file) { return file.ends_with(".desktop"); };
  if (std::ranges::all_of(entry.files, isDesktopEntry)) return true;
  // A unit has settings beside its command that make another program of it. Which file is read goes
  // by the name of a link, wherever that leads.
  std::error_code error;
  return entry.unitFiles.size() == 1 && fs::canonical(entry.unitFiles.front(), error) == unit &&
         !error;
}

}  // namespace tallowin::platform::linux_host
