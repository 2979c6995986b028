// The three descriptors that every program counts on.
#pragma once

namespace tallowin::platform::linux_host {

/// Opens those of standard input, output and error that the caller has closed, on /dev/null:
/// otherwise the first files of the program would stand in their places, and be read from and
/// written to as if they were the terminal. The first thing that a main routine does.
void OpenStandardDescriptors();

}  // namespace tallowin::platform::linux_host
