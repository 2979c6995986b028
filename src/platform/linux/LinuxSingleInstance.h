// One running program for each user, by a lock on a file.
#pragma once

#include <string>

#include "platform/SingleInstance.h"
#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// The system drops the lock with the process, however that ends; the file stays. Processes that
/// this one starts do not get the lock.
class LinuxSingleInstance : public SingleInstance {
 public:
  explicit LinuxSingleInstance(std::string lockFile) : lockFile_(std::move(lockFile)) {}

  /// True again for an object that holds the claim already.
  [[nodiscard]] bool Claim() override;

 private:
  std::string lockFile_;
  FileDescriptor lock_;
};

}  // namespace tallowin::platform::linux_host
