#include "platform/linux/RegistryStoreFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <utility>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Files.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnlyFile = 0600;

// The store itself comes last: killed in between, no log of the old store is left beside a new one,
// which would take it for its own.
constexpr std::array<const char*, 4> kPartsOfAStore{"-journal", "-wal", "-shm", ""};

RegistryResult TranslateError(int number) {
  switch (number) {
    case ENOENT:
      return registry::kNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ENOTDIR:
    case ELOOP:
      return registry::kAccessDenied;
    default:
      return registry::kWriteFault;
  }
}

/// kSuccess if there is a file; kNotFound if there is none and one could be there.
RegistryResult Look(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? registry::kSuccess : TranslateError(errno);
}

/// The settings hold mail addresses; a store that came from a backup may be open to everybody.
void CloseToOthers(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  const mode_t mode = status.st_mode & kOwnerOnlyFile;
  if ((status.st_mode & 0777U) != mode) (void)chmod(path.c_str(), mode);
}

/// A new empty file; one that is there already is not opened, since closing it would take SQLite's
/// locks on it away from this process.
RegistryResult MakeFile(const std::string& path) {
  const FileDescriptor file(
      open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kOwnerOnlyFile));
  if (file || errno == EEXIST) return registry::kSuccess;
  const RegistryResult result = TranslateError(errno);
  return result == registry::kNotFound ? registry::kAccessDenied : result;
}

/// The lock that is held while a store is being opened, made and set aside.
class OpeningLock {
 public:
  OpeningLock(const std::string& storePath, LockPatience& patience)
      : file_(open((storePath + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, kOwnerOnlyFile)) {
    if (!file_) return;
    for (int tries = 0; !(held_ = flock(file_.Get(), LOCK_EX | LOCK_NB) == 0); ++tries) {
      if (errno != EWOULDBLOCK && errno != EINTR) return;
      taken_ = !patience.Wait(tries);
      if (taken_) return;
    }
  }

  [[nodiscard]] bool Held() const { return held_; }
  /// True if another process did not let go of it.
  [[nodiscard]] bool Taken() const { return taken_; }

 private:
  FileDescriptor file_;
  bool held_ = false;
  bool taken_ = false;
};

std::string LocalTimestamp() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 32> text{};
  const auto length = std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &local);
  return {text.data(), length};
}

bool AnyPartExists(const std::string& path) {
  for (const char* part : kPartsOfAStore) {
    if (NameExists(path + part)) return true;
  }
  return false;
}

std::string FreeNameFor(const std::string& path) {
  const std::string wanted = path + ".damaged-" + LocalTimestamp();
  std::string name = wanted;
  for (int number = 2; AnyPartExists(name); ++number) name = wanted + "-" + std::to_string(number);
  return name;
}

/// The file that the path leads to, so that a link to a store elsewhere stays a link.
std::string ResolveLinks(const std::string& path) {
  std::error_code failed;
  const fs::path resolved = fs::canonical(path, failed);
  return failed ? path : resolved.string();
}

}  // namespace

RegistryStoreFile::RegistryStoreFile(const std::string& path, DamageReport report)
    : path_(ResolveLinks(path)), report_(std::move(report)) {}

RegistryResult RegistryStoreFile::Open(bool create, std::shared_ptr<RegistryStore>& store) {
  const RegistryResult found = Look(path_);
  if (found != registry::kSuccess && (found != registry::kNotFound || !create)) return found;
  if (create) MakePrivateFolders(fs::path(path_).parent_path().string());

  const OpeningLock lock(path_, *patience_);
  if (lock.Taken()) return registry::kWriteFault;
  if (create) {
    const RegistryResult made = MakeFile(path_);
    if (made != registry::kSuccess) return made;
  }
  return OpenChecked(lock.Held(), store);
}

RegistryResult RegistryStoreFile::OpenChecked(bool maySetAside,
                                              std::shared_ptr<RegistryStore>& store) {
  CloseToOthers(path_);
  for (const bool mayRetry : {maySetAside, false}) {
    auto opened = std::make_shared<RegistryStore>(patience_);
    RegistryStore::Opening opening{RegistryStore::Condition::Damaged, registry::kWriteFault};
    if (!LogWithoutStore()) opening = opened->Open(path_);
    if (opening.condition == RegistryStore::Condition::Usable) store = std::move(opened);
    if (opening.condition != RegistryStore::Condition::Damaged || !mayRetry) return opening.result;

    opened.reset();
    if (!SetAside()) return registry::kAccessDenied;
    const RegistryResult made = MakeFile(path_);
    if (made != registry::kSuccess) return made;
  }
  return registry::kWriteFault;
}

bool RegistryStoreFile::SetAside() {
  const std::string name = FreeNameFor(path_);
  for (const char* part : kPartsOfAStore) {
    const bool moved = std::rename((path_ + part).c_str(), (name + part).c_str()) == 0;
    if (!moved && errno != ENOENT) return false;
  }
  if (report_) report_(name);
  return true;
}

bool RegistryStoreFile::LogWithoutStore() const {
  // SQLite deletes the log beside a file without content, and the log may hold all there is.
  struct stat store {};
  struct stat log {};
  return stat(path_.c_str(), &store) == 0 && store.st_size == 0 && S_ISREG(store.st_mode) &&
         stat((path_ + "-wal").c_str(), &log) == 0 && log.st_size > 0;
}

}  // namespace tallowin::platform::linux_host
