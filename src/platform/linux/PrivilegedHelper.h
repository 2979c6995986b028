// Asks tallowin-helper for what this user may not do.
#pragma once

#include <chrono>
#include <string>

#include "helper/Protocol.h"
#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// The helper is started for each request and ends with it. Where it is missing, or has not been
/// given its capabilities, every request fails as the system itself would fail it.
class PrivilegedHelper {
 public:
  explicit PrivilegedHelper(std::string program) : program_(std::move(program)) {}

  /// Beside the running program, or where a package puts it.
  [[nodiscard]] static std::string FindProgram(const std::string& folderOfExecutable);

  struct Outcome {
    int error = 0;  ///< 0, or a value of errno
    FileDescriptor socket = FileDescriptor();
  };
  /// TCP, bound on all addresses, not blocking; `port` below 1024. Each call takes 3 s at most.
  [[nodiscard]] Outcome BindTcp(int port) const;
  [[nodiscard]] Outcome OpenRawIcmp() const;
  /// 0, or a value of errno.
  [[nodiscard]] int SetClock(std::chrono::system_clock::time_point time) const;

 private:
  [[nodiscard]] Outcome Ask(const helper::Request& request) const;

  std::string program_;
};

}  // namespace tallowin::platform::linux_host
