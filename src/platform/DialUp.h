// The machine's dial-up links.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tallowin::platform {

/// Results of these calls, in the numbering of the remote access calls.
using RasResult = std::uint32_t;
namespace ras {
inline constexpr RasResult kSuccess = 0;
inline constexpr RasResult kBufferTooSmall = 603;
inline constexpr RasResult kNoConnection = 668;
inline constexpr RasResult kEnumerationFailed = 635;  ///< the list cannot be had, for any reason
}  // namespace ras

struct RasConnection {
  std::string hRasConn;     ///< what this host knows the link by
  std::string szEntryName;  ///< what the user calls it, in UTF-8; may be empty
};

class DialUp {
 public:
  virtual ~DialUp() = default;

  /// The active links that were dialled: by modem, by telephone, by a point-to-point protocol.
  /// Fills `connections` from its start and sets `count` to their number. Gives kBufferTooSmall,
  /// with the number wanted, where there are more than it holds, and kEnumerationFailed where the
  /// service that knows the links does not run, refuses or keeps silent. Throws RunTimeError 53 on
  /// a host that cannot have such links at all.
  virtual RasResult RasEnumConnections(std::span<RasConnection> connections,
                                       std::size_t& count) = 0;

  /// Starts to drop the link and does not wait until it is down. kNoConnection if it is none, or if
  /// it may not be dropped.
  virtual RasResult RasHangUp(const RasConnection& connection) = 0;
};

}  // namespace tallowin::platform
