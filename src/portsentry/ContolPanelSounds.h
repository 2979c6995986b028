// Sound events, which the user can point to other sounds in the system's own settings.
#pragma once

#include <string>
#include <string_view>

#include "core/TallowinModule.h"
#include "platform/Registry.h"
#include "platform/Sound.h"

namespace tallowin::portsentry {

inline constexpr std::string_view kSoundApplication = "Tallowin";
inline constexpr std::string_view kHackerDetected = "Hacker Detected";
inline constexpr std::string_view kTrojanDetected = "Trojan Detected";

/// A failing read or write is passed over in silence: an alarm without its sound is still an alarm.
class ContolPanelSounds {
 public:
  ContolPanelSounds(platform::Registry& registry, platform::Sound& sound,
                    const core::TallowinModule& module)
      : registry_(registry), sound_(sound), module_(module) {}

  /// Starts the event's sound and returns at once. The event is looked up in the default profile,
  /// though it is written for the current user: where the two differ, the event must be present in
  /// the default profile as well.
  void PlaySoundEvent(std::string_view application, std::string_view event);

  void AddSoundEvent(std::string_view application, std::string_view event, std::string_view file);
  [[nodiscard]] bool SoundEventExists(std::string_view application, std::string_view event);

  /// Makes those of the program's own events that are missing, and names the scheme.
  void RegisterSoundEvents();

 private:
  platform::Registry& registry_;
  platform::Sound& sound_;
  const core::TallowinModule& module_;
};

}  // namespace tallowin::portsentry
