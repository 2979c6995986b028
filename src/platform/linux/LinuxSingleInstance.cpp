#include "platform/linux/LinuxSingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

namespace tallowin::platform::linux_host {

bool LinuxSingleInstance::Claim() {
  if (lock_) return true;
  FileDescriptor lock(open(lockFile_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!lock) return true;
  while (flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK) return false;
    if (errno != EINTR) return true;
  }
  lock_ = std::move(lock);
  return true;
}

}  // namespace tallowin::platform::linux_host
