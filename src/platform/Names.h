// Names and addresses of hosts (IPv4).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tallowin::platform {

/// Addresses are packed: a signed 32-bit number in network byte order. Texts are bytes; one with a
/// NUL in it ends there.
class Names {
 public:
  static constexpr std::int32_t kNoAddress = -1;

  virtual ~Names() = default;

  /// The address that a dotted text means, without asking anybody; `kNoAddress` if it is none,
  /// and for "255.255.255.255", which cannot be told from that. The short forms ("127.1") and the
  /// octal and hexadecimal ones are taken as well, and whatever stands behind a blank is ignored.
  [[nodiscard]] virtual std::int32_t InetAddr(const std::string& text) const = 0;

  /// The dotted text of an address.
  [[nodiscard]] virtual std::string InetNtoa(std::int32_t address) const = 0;

  /// The first address of a name, as the host resolves names (its own table, the name service ...);
  /// nothing if there is none, or no answer. Blocks. The host may give up on a name service that is
  /// dead sooner than its own programs do.
  [[nodiscard]] virtual std::optional<std::int32_t> GetHostByName(const std::string& name) = 0;

  /// The name of an address; nothing if there is none, or no answer. Blocks, like GetHostByName.
  /// The name is whatever the owner of the address wrote, as far as the host lets that pass: the
  /// caller must be ready for any bytes but NUL.
  [[nodiscard]] virtual std::optional<std::string> GetHostByAddr(std::int32_t address) = 0;
};

}  // namespace tallowin::platform
