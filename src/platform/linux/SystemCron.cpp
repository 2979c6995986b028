#include "platform/linux/SystemCron.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/linux/Files.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestTable = std::size_t{4} << 20U;

/// Files that editors and packages leave beside the real ones, which cron passes over as well. Some
/// crons pass over more names; these are told of all the same.
bool IsLeftOver(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  const std::string ending = dot == std::string::npos ? std::string() : name.substr(dot);
  return name.starts_with('.') || name.ends_with('~') || ending.starts_with(".dpkg-") ||
         ending == ".rpmsave" || ending == ".rpmorig" || ending == ".rpmnew";
}

}  // namespace

bool SystemCron::Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) {
  tables_.BeginLook();
  // A single file is watched for by its folder: it is replaced as a whole by most editors.
  if (!places_.systemCrontab.empty()) {
    watch.Name(fs::path(places_.systemCrontab).parent_path().string());
    if (!LookInto(places_.systemCrontab, entries)) return false;
  }
  watch.Name(places_.cronFolder);
  std::vector<NameInFolder> names;
  if (ReadFolder(places_.cronFolder, names) == Reading::ShortOfAll) return false;
  for (const NameInFolder& name : names) {
    if (name.isFolder || IsLeftOver(name.name)) continue;
    if (!LookInto(places_.cronFolder + "/" + name.name, entries)) return false;
  }
  tables_.EndLook();
  return true;
}

bool SystemCron::LookInto(const std::string& path, std::vector<AutostartEntry>& entries) {
  std::shared_ptr<const SystemTable> table;
  if (tables_.Get(path, table) == Reading::ShortOfAll) return false;
  if (!table) return true;
  for (AutostartEntry& entry : CronEntries(path, table->lines, StampOfName(path).changed)) {
    entries.push_back(std::move(entry));
  }
  return true;
}

RegistryResult SystemCron::Undo(const AutostartEntry& entry) {
  std::error_code error;
  const std::string path = fs::canonical(entry.files.front(), error).string();
  if (error) return TranslateFileError(error.value());
  if (faccessat(AT_FDCWD, fs::path(path).parent_path().c_str(), W_OK, AT_EACCESS) != 0) {
    return TranslateFileError(errno);
  }
  BoundedText table;
  if (ReadBounded(path, kLargestTable, table) != Reading::Done || !table.whole) {
    return registry::kWriteFault;
  }
  const std::string remaining = WithoutLine(table.text, entry.line);
  if (remaining == table.text) return registry::kNotFound;
  const RegistryResult kept = copies_.Keep(entry.files.front(), table.text);
  if (kept != registry::kSuccess) return kept;
  const int failure = ReplaceFile(path, remaining);
  return failure == 0 ? registry::kSuccess : TranslateFileError(failure);
}

}  // namespace tallowin::platform::linux_host
