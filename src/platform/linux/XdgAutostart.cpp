#include "platform/linux/XdgAutostart.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace tallowin::platform::linux_host {
namespace {

bool IsProgram(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

}  // namespace

bool XdgAutostart::Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) {
  files_.BeginLook();
  std::set<std::string> hidden;
  const auto lookInto = [&](const std::string& folder, Of owner) {
    if (folder.empty()) return true;
    watch.Name(folder);
    return LookInto(folder, owner == of_, hidden, entries);
  };
  bool known = lookInto(places_.userAutostart, Of::User);
  for (const std::string& folder : places_.systemAutostart) {
    known = known && lookInto(folder, Of::System);
  }
  files_.EndLook();
  return known;
}

bool XdgAutostart::LookInto(const std::string& folder, bool told, std::set<std::string>& hidden,
                            std::vector<AutostartEntry>& entries) {
  std::vector<NameInFolder> names;
  if (ReadFolder(folder, names) == Reading::ShortOfAll) return false;
  for (const NameInFolder& each : names) {
    if (!each.name.ends_with(".desktop") || each.isFolder) continue;
    // A file that does not start anything hides the others as well: that is how entries of the
    // system are switched off.
    if (!hidden.insert(each.name).second || !told) continue;
    const std::string path = folder + "/" + each.name;
    std::shared_ptr<const DesktopEntry> entry;
    if (files_.Get(path, entry) == Reading::ShortOfAll) return false;
    if (!entry || !Starts(*entry)) continue;
    entries.push_back({.name = "XDG autostart: " + path,
                       .command = entry->Command(),
                       .changed = StampOfName(path).changed,
                       .files = {path}});
  }
  return true;
}

bool XdgAutostart::Starts(const DesktopEntry& entry) const {
  return entry.IsStarted(places_.desktops, [this](const std::string& program) {
    if (program.find('/') != std::string::npos) return IsProgram(program);
    return std::ranges::any_of(places_.programFolders, [&](const std::string& folder) {
      return IsProgram(folder + "/" + program);
    });
  });
}

}  // namespace tallowin::platform::linux_host
