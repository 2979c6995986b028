#include "platform/linux/LinuxProcesses.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Files.h"
#include "platform/linux/ForeignFiles.h"
#include "platform/linux/ProcessFiles.h"

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
  const char* end = name.data() + name.size();
  const auto result = std::from_chars(name.data(), end, id);
  if (result.ec != std::errc() || result.ptr != end || id == 0) return {};
  return id;
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
std::string BareName(const std::string& name) { return name.substr(name.rfind('/') + 1); }

bool HasEnded(const ProcessStatus& status) { return status.state == 'Z' || status.state == 'X'; }

/// The folder of a thread that runs: the first one may have ended and the others go on. Empty once
/// all have ended.
std::string RunningThreadIn(const std::string& folder) {
  for (const std::uint32_t id : IdsIn(folder + "/task").value_or(std::vector<std::uint32_t>())) {
    std::string thread = folder + "/task/" + std::to_string(id);
    const auto status = StatusIn(thread);
    if (status && !HasEnded(*status)) return thread;
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

/// The error number in this system's numbering, as the contract has it.
std::uint32_t ErrorNumber(int number) {
  return number == EACCES || number == EPERM ? processes::kAccessDenied : processes::kNoSuchProcess;
}

/// The lowest address of each executable file, the files in the order of their addresses.
std::vector<ModuleEntry> ModulesFrom(std::istream& maps) {
  std::map<std::string, std::uint64_t> bases;
  std::map<std::uint64_t, std::string> executable;
  for (std::string line; std::getline(maps, line);) {
    const auto mapping = ParseMapping(line);
    if (!mapping || mapping->file.empty()) continue;
    const auto base = bases.emplace(mapping->file, mapping->start).first;
    if (mapping->executable) executable.emplace(base->second, mapping->file);
  }
  std::vector<ModuleEntry> modules;
  modules.reserve(executable.size());
  for (const auto& [base, file] : executable) {
    modules.push_back({.handle = base, .exePath = std::string(WithoutDeletedMark(file))});
  }
  return modules;
}

}  // namespace

std::string LinuxProcesses::FolderOf(std::uint32_t processId) const {
  return folder_ + "/" + std::to_string(processId);
}

std::optional<ProcessEntry> LinuxProcesses::EntryOf(std::uint32_t processId) const {
  const std::string folder = FolderOf(processId);
  const auto status = StatusIn(folder);
  if (!status || status->kernelThread) return {};
  const std::string running = HasEnded(*status) ? RunningThreadIn(folder) : folder;
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
  errno = 0;
  std::ifstream maps(FolderOf(processId) + "/maps", std::ios::binary);
  if (!maps) return ErrorNumber(errno);
  std::vector<ModuleEntry> found = ModulesFrom(maps);
  if (maps.bad()) return processes::kNoSuchProcess;
  // Spelt as among the mappings, where a few odd names look the same.
  const std::string link = LinkTarget(FolderOf(processId) + "/exe");
  const std::string program = WithNewlines(WithoutDeletedMark(link));
  std::stable_partition(found.begin(), found.end(),
                        [&](const ModuleEntry& module) { return module.exePath == program; });
  modules = std::move(found);
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
