// Sockets that nobody reaches by IPv4, which the tables of /proc/net do not tell from the others.
#pragma once

#include <cstdint>
#include <unordered_set>

namespace tallowin::platform::linux_host {

/// The inodes of the waiting sockets of IPv6 that asked for IPv6 alone, by the kernel's socket
/// diagnosis (sock_diag(7)). `protocol` is IPPROTO_TCP or IPPROTO_UDP. None where the kernel is
/// without it, and where it breaks off those that it has told of.
[[nodiscard]] std::unordered_set<std::uint32_t> Ipv6OnlySockets(std::uint8_t protocol);

}  // namespace tallowin::platform::linux_host
