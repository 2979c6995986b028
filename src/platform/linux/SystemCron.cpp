#include "platform/linux/SystemCron.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestTable = std::size_t{4} << 20U;

/// Files that editors and packages leave beside the real ones; cron passes over them as well.
bool IsLeftOver(const std::string& name) {
  return name.starts_with('.') || name.ends_with('~') || name.find(".dpkg-") != std::string::npos ||
         name.find(".rpm") != std::string::npos;
}

bool WriteWhole(int descriptor, const std::string& text) {
  const ssize_t count = write(descriptor, text.data(), text.size());
  return count == static_cast<ssize_t>(text.size()) && fsync(descriptor) == 0;
}

/// The table is the old one or the new one at every moment. The name in between begins with a dot,
/// which cron passes over.
RegistryResult Replace(const std::string& path, const std::string& text) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return TranslateFileError(errno);
  const fs::path file(path);
  std::string part = (file.parent_path() / ("." + file.filename().string() + ".XXXXXX")).string();
  const FileDescriptor writer(mkostemp(part.data(), O_CLOEXEC));
  if (!writer) return TranslateFileError(errno);
  const bool written = fchmod(writer.Get(), status.st_mode & 07777U) == 0 &&
                       fchown(writer.Get(), status.st_uid, status.st_gid) == 0 &&
                       WriteWhole(writer.Get(), text);
  if (written && std::rename(part.c_str(), path.c_str()) == 0) return registry::kSuccess;
  const RegistryResult result = TranslateFileError(errno);
  (void)unlink(part.c_str());
  return result;
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
  return kept == registry::kSuccess ? Replace(path, remaining) : kept;
}

}  // namespace tallowin::platform::linux_host
