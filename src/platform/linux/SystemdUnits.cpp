#include "platform/linux/SystemdUnits.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tallowin::platform::linux_host {
namespace {

bool HoldsDependencies(std::string_view folder) {
  return folder.ends_with(".wants") || folder.ends_with(".requires") ||
         folder.ends_with(".upholds");
}

/// A template that is asked for without an instance gets that of the unit that asks, or its name.
std::string NameIn(const std::string& folder, const std::string& link) {
  UnitName unit = UnitName::Parse(link);
  if (!unit.IsTemplate()) return link;
  const UnitName asking = UnitName::Parse(folder.substr(0, folder.rfind('.')));
  unit.instance = asking.hasInstance ? asking.instance : asking.prefix;
  return unit.Text();
}

/// Aliases of targets and the like only choose between states of the system.
bool RunsPrograms(const UnitName& unit) {
  constexpr std::array<std::string_view, 4> kTypes = {"service", "socket", "timer", "path"};
  return std::ranges::find(kTypes, unit.type) != kTypes.end();
}

}  // namespace

bool SystemdUnits::Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) {
  enabled_.clear();
  masked_.clear();
  if (!search_.BeginLook(watch) || !LookForLinks(watch)) return false;
  AddEntries(entries);
  search_.EndLook();
  return !search_.WasShort();
}

bool SystemdUnits::LookForLinks(FolderWatch& watch) {
  for (const UnitSearch::Folder& folder : search_.Folders()) {
    for (const auto& [name, kind] : folder.names) {
      const std::string path = folder.place.path + "/" + name;
      if (HoldsDependencies(name)) {
        watch.Name(path);
        if (!LookIntoDependencies(path, name)) return false;
      } else if (kind.isLink && !folder.place.packaged) {
        const UnitName unit = UnitName::Parse(name);
        if (RunsPrograms(unit) && search_.WithoutAliases(name) != name) AddLink(name, path);
      }
    }
  }
  return true;
}

bool SystemdUnits::LookIntoDependencies(const std::string& folder, const std::string& name) {
  std::vector<NameInFolder> links;
  if (ReadFolder(folder, links) == Reading::ShortOfAll) return false;
  for (const NameInFolder& link : links) {
    if (!UnitName::Parse(link.name).IsValid()) continue;
    const std::string dependency = name + "/" + link.name;
    const std::string path = folder + "/" + link.name;
    if (LinkTarget(path) == "/dev/null") {
      masked_.insert(dependency);
    } else if (!masked_.contains(dependency)) {
      AddLink(NameIn(name, link.name), path);
    }
  }
  return true;
}

void SystemdUnits::AddLink(const std::string& name, const std::string& link) {
  Enabled& unit = enabled_[search_.WithoutAliases(name)];
  unit.links.push_back(link);
  unit.changed = std::max(unit.changed, StampOfName(link).changed);
}

void SystemdUnits::AddEntries(std::vector<AutostartEntry>& entries) {
  for (const auto& [name, unit] : enabled_) {
    if (UnitName::Parse(name).IsTemplate()) continue;
    const UnitSearch::State state = search_.StateOf(name);
    if (state == UnitSearch::State::Masked) continue;
    std::string fragment;
    if (state == UnitSearch::State::Missing) {
      // A link that leads to a unit file elsewhere: rather too much told than too little.
      FileStamp stamp;
      const auto leads = std::ranges::find_if(unit.links, [&](const std::string& link) {
        return StampOfFile(link, stamp) != Reading::Absent;
      });
      if (leads == unit.links.end()) continue;
      fragment = *leads;
    }
    UnitSearch::Start start = search_.StartOf(name, fragment);
    entries.push_back({.name = "systemd unit: " + unit.links.front(),
                       .command = std::move(start.command),
                       .changed = unit.changed,
                       .files = unit.links,
                       .unitFiles = std::move(start.files)});
  }
}

}  // namespace tallowin::platform::linux_host
