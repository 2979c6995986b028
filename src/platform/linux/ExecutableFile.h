// A file on this machine, opened for its resources.
#pragma once

#include <memory>
#include <string_view>

#include "platform/linux/PeResources.h"
#include "platform/linux/WindowsDrive.h"

namespace tallowin::platform::linux_host {

/// Null for what is no PE file or cannot be read. Never waits for another program.
[[nodiscard]] std::unique_ptr<PeResources> OpenExecutable(const WindowsDrive& drive,
                                                          std::string_view path);

}  // namespace tallowin::platform::linux_host
