// IPv4 addresses and TCP descriptors as the socket calls want them.
#pragma once

#include <netinet/in.h>

#include <optional>
#include <string>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// Nothing if `dotted` is no dotted address.
[[nodiscard]] std::optional<sockaddr_in> AddressOf(const std::string& dotted, int port);
[[nodiscard]] std::string DottedAddress(const sockaddr_in& address);
[[nodiscard]] int PortOf(const sockaddr_in& address);

/// A new TCP socket that never waits and that child processes do not inherit. Throws RunTimeError.
[[nodiscard]] FileDescriptor OpenTcpSocket();
/// Binds to `port` on all addresses, 0 being any port. 0, or the value of errno.
[[nodiscard]] int TryToBind(const FileDescriptor& socket, int port);
/// The same, but throws RunTimeError.
void BindToPort(const FileDescriptor& socket, int port);

/// The port at this end; 0 if there is none.
[[nodiscard]] int LocalPortOf(const FileDescriptor& socket);

/// Whether closing the descriptor resets the connection instead of ending it in order.
void SetResetOnClose(const FileDescriptor& socket, bool reset);

}  // namespace tallowin::platform::linux_host
