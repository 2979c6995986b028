#include "platform/linux/LinuxFiles.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>

#include "platform/RunTimeError.h"
#include "platform/linux/AvailableMemory.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ForeignFiles.h"
#include "platform/linux/LinuxPaths.h"

namespace tallowin::platform::linux_host {
namespace {

/// Large files get large pages where the system has them: most of the time of a first read is
/// spent on the pages that it goes into.
char* Allocate(std::size_t size) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20U;
  constexpr std::size_t kWorthAsking = std::size_t{16} << 20U;
  if (size >= kWorthAsking && size > AvailableMemory()) throw std::bad_alloc();
  if (size < kLargePage) {
    void* small = std::malloc(size);
    if (small == nullptr) throw std::bad_alloc();
    return static_cast<char*>(small);
  }
  const std::size_t rounded = (size + kLargePage - 1) / kLargePage * kLargePage;
  void* data = std::aligned_alloc(kLargePage, rounded);
  if (data == nullptr) throw std::bad_alloc();
  (void)madvise(data, rounded, MADV_HUGEPAGE);
  return static_cast<char*>(data);
}

/// How many bytes came.
std::size_t ReadAll(int descriptor, char* data, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = read(descriptor, data + done, size - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

RunTimeError NothingToRead() { return {error::kSubscriptOutOfRange, "Subscript out of range"}; }

}  // namespace

std::string LinuxFiles::RealName(std::string_view path) const {
  if (path.find('\0') != std::string_view::npos) return {};
  return drive_.Resolve(AbsolutePath(path));
}

FileContents LinuxFiles::Read(std::string_view path) {
  const std::string name = RealName(path);
  // Asked before the opening, since to open a device may do something already. Should something
  // else take its place meanwhile, then a pipe does not hold the program up, and a terminal does
  // not become ours.
  FileStamp stamp;
  if (StampOfFile(name, stamp) != Reading::Done) throw NothingToRead();
  const FileDescriptor file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status = {};
  if (!file || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) {
    throw NothingToRead();
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  FileContents contents(Allocate(size), size);
  char* data = contents.Bytes().data();
  const std::size_t done = ReadAll(file.Get(), data, size);
  std::memset(data + done, 0, size - done);
  return contents;
}

void LinuxFiles::Delete(std::string_view path) {
  if (unlink(RealName(path).c_str()) == 0) return;
  if (errno == ENOENT || errno == ENOTDIR) {
    throw RunTimeError(error::kFileNotFound, "File not found");
  }
  throw RunTimeError(error::kPathFileAccess, "Path/File access error");
}

}  // namespace tallowin::platform::linux_host
