#include "portsentry/AlarmResponses.h"

namespace tallowin::portsentry {

namespace {

// The buttons of the tool bar.
constexpr int kWhois = 1;
constexpr int kTraceRoute = 2;
constexpr int kPing = 3;
constexpr int kDnsLookup = 4;

constexpr std::int16_t kChecked = 1;

}  // namespace

bool AlarmResponses::IsSet(int slot, std::string_view name) {
  // From the registry and not from the table: a response counts once the options were confirmed.
  return settings_.ReadPortNumber(slot, name) == kChecked;
}

void AlarmResponses::RunAlarmResponses(int slot) {
  actions_.PressToolbar1(kDnsLookup);
  actions_.PressToolbar1(kPing);
  if (IsSet(slot, "Sound Siren")) sounds_.PlaySoundEvent(kSoundApplication, kHackerDetected);
  if (IsSet(slot, "Visual Warning")) formFlash_.Start();
  if (IsSet(slot, "Whois Hacker")) actions_.PressToolbar1(kWhois);
  if (IsSet(slot, "Trace Route Hacker")) actions_.PressToolbar1(kTraceRoute);
  if (IsSet(slot, "Hang Up Modem")) actions_.HangUpConnection();
  // Stored as "ShutDown"; the case of a value's name does not count. The last one on purpose.
  if (IsSet(slot, "Shutdown")) {
    (void)shutdown_.ExitWindowsEx(platform::shutdown::kShutdown | platform::shutdown::kForce, 0);
  }
}

}  // namespace tallowin::portsentry
