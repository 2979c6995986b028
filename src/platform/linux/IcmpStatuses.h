// What the network and the sockets say of an echo, in the numbering of the Windows calls.
#pragma once

#include <cstdint>
#include <optional>

namespace tallowin::platform::linux_host {

/// The status that an ICMP error message stands for; nothing for one that decides nothing, such as
/// a redirect, behind which the answer may still come.
[[nodiscard]] std::optional<std::uint32_t> StatusOfMessage(std::uint8_t type, std::uint8_t code);

/// For the value of errno with which a socket could not be had, or would not send.
[[nodiscard]] std::uint32_t StatusOfOpenError(int errnoValue);
[[nodiscard]] std::uint32_t StatusOfSendError(int errnoValue);

}  // namespace tallowin::platform::linux_host
