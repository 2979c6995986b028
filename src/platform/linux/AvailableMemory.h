// How much memory there is to be had.
#pragma once

#include <cstdint>
#include <string>

namespace tallowin::platform::linux_host {

/// This system promises more memory than there is, and ends a program that takes the promise at its
/// word. So what an allocation would say has to be asked for: what the machine has left, or what
/// one of the control groups that this process is in leaves to it. Without an answer it is
/// UINT64_MAX. `root` is put in front of the system's folders, for tests.
[[nodiscard]] std::uint64_t AvailableMemory(const std::string& root = {});

}  // namespace tallowin::platform::linux_host
