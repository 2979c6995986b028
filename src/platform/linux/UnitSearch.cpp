#include "platform/linux/UnitSearch.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

std::string BaseName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string WithoutLinks(const fs::path& folder) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(folder, error);
  return (error ? folder : real).string();
}

/// In "a-b-.service.d" lie drop-ins for all units whose names begin with "a-b-".
std::vector<std::string> DropInFolders(const UnitName& unit) {
  std::vector<std::string> names = {unit.type + ".d"};
  for (std::size_t dash = unit.prefix.find('-'); dash != std::string::npos;
       dash = unit.prefix.find('-', dash + 1)) {
    names.push_back(unit.prefix.substr(0, dash + 1) + "." + unit.type + ".d");
  }
  if (unit.hasInstance) names.push_back(unit.Template() + ".d");
  names.push_back(unit.Text() + ".d");
  return names;
}

}  // namespace

bool UnitSearch::BeginLook(FolderWatch& watch) {
  watch_ = &watch;
  short_ = false;
  files_.BeginLook();
  folders_.clear();
  for (const UnitFolder& place : places_) {
    watch.Name(place.path);
    std::vector<NameInFolder> names;
    if (ReadFolder(place.path, names) == Reading::ShortOfAll) return false;
    Folder folder{.place = place, .real = WithoutLinks(place.path)};
    for (NameInFolder& name : names) folder.names.emplace(name.name, name);
    folders_.push_back(std::move(folder));
  }
  return true;
}

std::string UnitSearch::Find(std::string_view name) const {
  for (const Folder& folder : folders_) {
    const auto found = folder.names.find(name);
    if (found == folder.names.end() || found->second.isFolder) continue;
    return folder.place.path + "/" + found->first;
  }
  return {};
}

std::string UnitSearch::FragmentOf(const UnitName& unit) const {
  std::string path = Find(unit.Text());
  if (path.empty() && unit.hasInstance) path = Find(unit.Template());
  return path;
}

bool UnitSearch::IsPlace(const fs::path& folder) const {
  const auto holds = [this](const std::string& path) {
    return std::ranges::any_of(
        folders_, [&](const Folder& each) { return each.place.path == path || each.real == path; });
  };
  return holds(folder.string()) || holds(WithoutLinks(folder));
}

/// A link that leads out of the folders is a unit of its own, whatever the file behind it is
/// called: the name of a unit that is known already would be a hiding-place.
std::string UnitSearch::AliasTarget(const UnitName& unit) const {
  const std::string path = FragmentOf(unit);
  const std::string link = path.empty() ? std::string() : LinkTarget(path);
  if (link.empty()) return {};
  const fs::path leadsTo = (fs::path(path).parent_path() / link).lexically_normal();
  const std::string target = leadsTo.filename().string();
  UnitName named = UnitName::Parse(target);
  if (!named.IsValid() || target == BaseName(path) || !IsPlace(leadsTo.parent_path())) return {};
  if (named.IsTemplate()) named.instance = unit.instance;
  return named.Text();
}

std::string UnitSearch::WithoutAliases(std::string_view name) const {
  std::string current(name);
  constexpr int kMostSteps = 16;
  for (int step = 0; step < kMostSteps; ++step) {
    const UnitName unit = UnitName::Parse(current);
    std::string target = unit.IsValid() ? AliasTarget(unit) : std::string();
    if (target.empty()) return current;
    current = std::move(target);
  }
  return std::string(name);
}

UnitSearch::State UnitSearch::StateOf(std::string_view unit) const {
  const std::string path = FragmentOf(UnitName::Parse(unit));
  if (path.empty()) return State::Missing;
  if (LinkTarget(path) == "/dev/null") return State::Masked;
  FileStamp stamp;
  const bool empty = StampOfFile(path, stamp) == Reading::Done && stamp.size == 0;
  return empty ? State::Masked : State::Startable;
}

std::shared_ptr<const UnitFile> UnitSearch::Read(const std::string& path) {
  std::shared_ptr<const UnitFile> file;
  if (files_.Get(path, file) == Reading::ShortOfAll) short_ = true;
  return file;
}

/// By file name, since the same name in a more important folder hides the others.
std::map<std::string, std::string> UnitSearch::DropInsOf(const UnitName& unit) {
  std::map<std::string, std::string> dropIns;
  std::vector<std::string> wanted = DropInFolders(unit);
  std::ranges::reverse(wanted);
  // The more particular folder and then the more important place goes first, and the first stays.
  for (const std::string& name : wanted) {
    for (const Folder& folder : folders_) {
      if (!folder.names.contains(name)) continue;
      const std::string path = folder.place.path + "/" + name;
      watch_->Name(path);
      std::vector<NameInFolder> files;
      if (ReadFolder(path, files) == Reading::ShortOfAll) short_ = true;
      for (const NameInFolder& file : files) {
        if (file.name.ends_with(".conf")) dropIns.try_emplace(file.name, path + "/" + file.name);
      }
    }
  }
  return dropIns;
}

std::vector<std::string> UnitSearch::FilesOf(const UnitName& unit,
                                             const std::string& otherFragment) {
  std::vector<std::string> files;
  std::string path = FragmentOf(unit);
  if (path.empty()) path = otherFragment;
  if (!path.empty()) files.push_back(std::move(path));
  for (auto& [name, dropIn] : DropInsOf(unit)) files.push_back(std::move(dropIn));
  return files;
}

UnitCommands UnitSearch::CommandsIn(const std::vector<std::string>& files) {
  UnitCommands commands;
  for (const std::string& path : files) {
    const auto file = Read(path);
    if (file) commands.Apply(*file);
  }
  return commands;
}

UnitSearch::Start UnitSearch::StartOf(std::string_view name, const std::string& otherFragment) {
  const UnitName unit = UnitName::Parse(name);
  Start start{.command = {}, .files = FilesOf(unit, otherFragment)};
  const UnitCommands commands = CommandsIn(start.files);
  const bool activates = unit.type == "timer" || unit.type == "path" || unit.type == "socket";
  if (!activates) {
    start.command = commands.Command(unit, meanings_);
    return start;
  }
  // What is started then is another unit, which has the same name unless it is told.
  UnitName started = UnitName::Parse(commands.Activated(unit, meanings_));
  if (!started.IsValid()) {
    started = unit;
    started.type = "service";
    // A socket may start one instance for each connection.
    if (FragmentOf(started).empty()) started.hasInstance = true;
  }
  started = UnitName::Parse(WithoutAliases(started.Text()));
  if (StateOf(started.Text()) != State::Masked) {
    start.command = CommandsIn(FilesOf(started, {})).Command(started, meanings_);
  }
  return start;
}

}  // namespace tallowin::platform::linux_host
