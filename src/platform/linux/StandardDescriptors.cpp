#include "platform/linux/StandardDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

namespace tallowin::platform::linux_host {

void OpenStandardDescriptors() {
  int opened = 0;
  do {
    opened = open("/dev/null", O_RDWR);
  } while (opened >= 0 && opened <= STDERR_FILENO);
  if (opened > STDERR_FILENO) close(opened);
}

}  // namespace tallowin::platform::linux_host
