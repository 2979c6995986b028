#include "platform/linux/LinuxProcesses.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <sstream>
#include <system_error>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Files.h"
#include "platform/linux/ForeignFiles.h"
#include "platform/linux/ProcessFiles.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kKernelName = "[kernel]";

/// Nothing once the process or thread has gone: its files may be open still, and reading fails.
std::optional<ProcessStatus> StatusIn(const std::string& folder) {
  constexpr std::size_t kLongest = 4096;
  BoundedText status;
  if (ReadBounded(folder + "/stat", kLongest, status) != Reading::Done) return {};
  return ParseProcessStatus(status.text);
}

std::optional<std::uint32_t> IdFromName(const std::string& name) {
  std::uint32_t id = 0;
  return ReadNumber(name, id) && id != 0 ? std::optional(id) : std::nullopt;
}

/// In the order of the ids.
std::optional<std::vector<std::uint32_t>> IdsIn(const std::string& folder) {
  std::vector<std::uint32_t> ids;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; entry != end; entry.increment(error)) {
    if (error) break;
    if (const auto id = IdFromName(entry->path().filename().string())) ids.push_back(*id);
  }
  if (error) return {};
  std::sort(ids.begin(), ids.end());
  return ids;
}

/// Other users choose what their processes call themselves: without a separator it is no full path.
/// Nobody hides by having no name.
std::string BareName(std::string name) {
  while (name.ends_with('/')) name.pop_back();
  name.erase(0, name.rfind('/') + 1);
  return name.empty() ? "[unnamed]" : name;
}

/// The folder of a thread that runs: the first one may have ended and the others go on. Empty once
/// all have ended.
std::string RunningThreadIn(const std::string& folder) {
  for (const std::uint32_t id : IdsIn(folder + "/task").value_or(std::vector<std::uint32_t>())) {
    std::string thread = folder + "/task/" + std::to_string(id);
    const auto status = StatusIn(thread);
    if (status && !status->ended) return thread;
  }
  return {};
}

bool Names(const std::string& path, const struct stat& file) {
  struct stat named = {};
  return stat(path.c_str(), &named) == 0 && named.st_dev == file.st_dev &&
         named.st_ino == file.st_ino;
}

/// Never the path of another file, which would be taken for the one that runs: a process in a
/// container names a file of the container, and what was deleted may have a successor.
std::string ProgramOf(const std::string& folder, const std::string& bareName) {
  const std::string link = folder + "/exe";
  std::string path = LinkTarget(link);
  struct stat running = {};
  if (!path.starts_with('/') || stat(link.c_str(), &running) != 0) return bareName;
  if (Names(path, running)) return path;
  const std::string_view former = WithoutDeletedMark(path);
  if (former.size() == path.size()) return bareName;
  path.resize(former.size());
  return !NameExists(path) || Names(path, running) ? path : bareName;
}

bool HasInode(const std::string& path, std::uint64_t inode) {
  struct stat named = {};
  return stat(path.c_str(), &named) == 0 && named.st_ino == inode;
}

bool IsDevice(const std::string& path) {
  struct stat named = {};
  return stat(path.c_str(), &named) == 0 && (S_ISCHR(named.st_mode) || S_ISBLK(named.st_mode));
}

/// The kernel writes a line end as a number and leaves a name that holds this number as it is: only
/// the link of the mapping tells the two apart.
std::string FileOf(const Mapping& mapping, const std::string& folder) {
  if (mapping.file.find("\\012") == std::string::npos) return mapping.file;
  std::ostringstream link;
  link << folder << "/map_files/" << std::hex << mapping.start << '-' << mapping.end;
  const std::string file = LinkTarget(link.str());
  return file.empty() ? mapping.file : file;
}

/// As for a program, never the path of another file: what was deleted loses its mark where nothing
/// has taken its place, and otherwise keeps it, with as many more as make it name nothing.
std::string ModulePath(std::string file, std::uint64_t inode) {
  std::string former(WithoutDeletedMark(file));
  if (former == file || HasInode(file, inode)) return file;
  if (!NameExists(former) || HasInode(former, inode)) return former;
  while (NameExists(file)) file += kDeletedMark;
  return file;
}

/// Memory that processes share is mapped under the name of a device.
bool IsModule(const std::string& file) {
  return !IsDevice(file) &&
         !(file != WithoutDeletedMark(file) && IsDevice(std::string(WithoutDeletedMark(file))));
}

/// The mappings of one file.
struct MappedFile {
  std::string file;
  std::uint64_t base = 0;  ///< the lowest address
  std::uint64_t inode = 0;
  bool executable = false;
};

/// In the order of their addresses, in which the mappings stand.
std::vector<MappedFile> FilesFrom(std::string_view maps, const std::string& folder) {
  std::map<std::string, std::size_t> places;
  std::vector<MappedFile> files;
  for (const std::string_view line : Parts(maps, '\n')) {
    const auto mapping = ParseMapping(line);
    if (!mapping || mapping->file.empty()) continue;
    const std::string file = FileOf(*mapping, folder);
    const auto [place, isNew] = places.emplace(file, files.size());
    if (isNew) files.push_back({file, mapping->start, mapping->inode});
    if (mapping->executable) files[place->second].executable = true;
  }
  return files;
}

}  // namespace

std::string LinuxProcesses::FolderOf(std::uint32_t processId) const {
  return folder_ + "/" + std::to_string(processId);
}

std::optional<ProcessEntry> LinuxProcesses::EntryOf(std::uint32_t processId) const {
  const std::string folder = FolderOf(processId);
  const auto status = StatusIn(folder);
  if (!status || status->kernelThread) return {};
  const std::string running = status->ended ? RunningThreadIn(folder) : folder;
  if (running.empty()) return {};
  return ProcessEntry{.processId = processId,
                      .startTime = status->startTime,
                      .basePriority = status->basePriority,
                      .exeFile = ProgramOf(running, BareName(status->name)) + '\0'};
}

std::optional<std::vector<ProcessEntry>> LinuxProcesses::Snapshot() {
  const auto ids = IdsIn(folder_);
  if (!ids) return {};
  std::vector<ProcessEntry> entries = {{.exeFile = std::string(kKernelName) + '\0'}};
  for (const std::uint32_t id : *ids) {
    if (auto entry = EntryOf(id)) entries.push_back(std::move(*entry));
  }
  return entries;
}

std::uint32_t LinuxProcesses::Modules(std::uint32_t processId, std::vector<ModuleEntry>& modules) {
  // A process has some ten thousand mappings at most, of which few name files.
  constexpr std::size_t kLongest = std::size_t{16} << 20U;
  std::string folder = FolderOf(processId);
  const auto status = StatusIn(folder);
  if (status && status->ended) folder = RunningThreadIn(folder);
  BoundedText maps;
  const Reading reading = ReadBounded(folder + "/maps", kLongest, maps);
  if (reading == Reading::Forbidden) return processes::kAccessDenied;
  if (reading != Reading::Done) return processes::kNoSuchProcess;

  std::vector<MappedFile> files = FilesFrom(maps.text, folder);
  std::erase_if(files, [](const auto& file) { return !file.executable || !IsModule(file.file); });
  const std::string program = LinkTarget(folder + "/exe");
  std::stable_partition(files.begin(), files.end(),
                        [&](const MappedFile& file) { return file.file == program; });
  modules.clear();
  for (MappedFile& file : files) {
    modules.push_back({file.base, ModulePath(std::move(file.file), file.inode)});
  }
  return processes::kSuccess;
}

void LinuxProcesses::Terminate(const ProcessEntry& entry) {
  if (entry.processId == 0 || folder_ != "/proc") return;
  // The descriptor holds on to one process, whatever becomes of the id. Whether it is the right one
  // is asked once it is held: asked before, the answer could be out of date.
  const FileDescriptor process(
      static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(entry.processId), 0)));
  if (!process) return;
  const auto status = StatusIn(FolderOf(entry.processId));
  if (!status || status->startTime != entry.startTime) return;
  (void)syscall(SYS_pidfd_send_signal, process.Get(), SIGKILL, nullptr, 0);
}

}  // namespace tallowin::platform::linux_host
