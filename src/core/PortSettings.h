// The table of decoy ports, as it is held in memory.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/RunTimeError.h"

namespace tallowin::core {

/// What a caller gets. Compared exactly, everywhere; these texts are also what is stored.
namespace action {
inline constexpr const char* kRefuse = "Don't accept connection";
inline constexpr const char* kSend = "Accept connection send packet then disconnect";
inline constexpr const char* kChat = "Let me talk to the hacker";
}  // namespace action

/// One slot. The flags are check states, of which exactly 1 is on.
struct PortSetting {
  std::int16_t SocketNumber = 0;  ///< TCP port; 0 is an empty slot, whatever else it holds
  std::string PortDescription;
  std::string PacketToSend;
  std::string Action;
  std::int16_t SoundSiren = 0;
  std::int16_t VisualWarning = 0;
  std::int16_t WhoisHacker = 0;
  std::int16_t TraceRouteHacker = 0;
  std::int16_t ShutDown = 0;
  std::int16_t HangUpModem = 0;

  friend bool operator==(const PortSetting&, const PortSetting&) = default;
};

inline constexpr int kFirstSlot = 1;
inline constexpr int kLastSlot = 15;

/// Slots 1 to 15. Slot 0 exists and is never used.
class PortTable {
 public:
  /// Throws RunTimeError 9 for a slot outside 0 to 15.
  PortSetting& operator()(int slot) { return slots_[Checked(slot)]; }
  const PortSetting& operator()(int slot) const { return slots_[Checked(slot)]; }

 private:
  static std::size_t Checked(int slot) {
    if (slot < 0 || slot > kLastSlot) {
      throw platform::RunTimeError(platform::error::kSubscriptOutOfRange, "Subscript out of range");
    }
    return static_cast<std::size_t>(slot);
  }

  std::array<PortSetting, kLastSlot + 1> slots_;
};

}  // namespace tallowin::core
