#include "platform/linux/ExecutableFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/ForeignFiles.h"
#include "platform/linux/Languages.h"
#include "platform/linux/LinuxPaths.h"

namespace tallowin::platform::linux_host {

std::unique_ptr<PeResources> OpenExecutable(const WindowsDrive& drive, std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return nullptr;
  const std::string name = drive.Resolve(AbsolutePath(path));
  // Asked before the opening, since to open a device or a pipe may do something already. Should
  // something else take its place meanwhile, then a pipe does not hold the program up, and a
  // terminal does not become ours.
  FileStamp stamp;
  if (StampOfFile(name, stamp) != Reading::Done) return nullptr;
  FileDescriptor file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status = {};
  if (!file || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  return PeResources::Open(
      std::make_unique<FileBytes>(std::move(file), static_cast<std::uint64_t>(status.st_size)),
      UserLanguage());
}

}  // namespace tallowin::platform::linux_host
