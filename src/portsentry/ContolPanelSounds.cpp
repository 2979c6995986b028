#include "portsentry/ContolPanelSounds.h"

#include <memory>
#include <utility>

namespace tallowin::portsentry {

namespace {

using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryValue;
namespace registry = platform::registry;

constexpr const char* kDefaultValue = "";
// The buffer takes fewer characters than its size, as told to the system, would allow.
constexpr std::size_t kToldSize = 510;
constexpr std::size_t kBufferSize = 255;

constexpr std::pair<std::string_view, const char*> kOwnEvents[] = {
    {kHackerDetected, "hacker.wav"},
    {kTrojanDetected, "trojan.wav"},
};

std::string EventKey(std::string_view application, std::string_view event) {
  return "AppEvents\\Schemes\\Apps\\" + std::string(application) + "\\" + std::string(event) +
         "\\.current";
}

void WriteDefaultValue(platform::Registry& store, const std::string& path, std::string_view text) {
  std::unique_ptr<RegistryKey> key;
  if (store.CreateKey(RegistryRoot::CurrentUser, path, key) != registry::kSuccess) return;
  (void)key->SetValue(kDefaultValue, RegistryValue::Text(text));
}

/// Empty if there is no such text, or one that the told size is too small for.
std::string ReadDefaultValue(RegistryKey& key) {
  RegistryValue value;
  if (key.QueryValue(kDefaultValue, value) != registry::kSuccess) return {};
  if (value.type != registry::kSz || value.data.size() >= kToldSize) return {};
  return value.data.substr(0, value.data.find('\0')).substr(0, kBufferSize);
}

}  // namespace

void ContolPanelSounds::PlaySoundEvent(std::string_view application, std::string_view event) {
  std::unique_ptr<RegistryKey> key;
  const std::string path = ".DEFAULT\\" + EventKey(application, event);
  if (registry_.OpenKey(RegistryRoot::Users, path, key) != registry::kSuccess) return;
  const std::string file = ReadDefaultValue(*key);
  key.reset();
  if (!file.empty()) (void)sound_.PlaySound(file);
}

void ContolPanelSounds::AddSoundEvent(std::string_view application, std::string_view event,
                                      std::string_view file) {
  WriteDefaultValue(registry_, EventKey(application, event), file);
}

bool ContolPanelSounds::SoundEventExists(std::string_view application, std::string_view event) {
  std::unique_ptr<RegistryKey> key;
  return registry_.OpenKey(RegistryRoot::CurrentUser, EventKey(application, event), key) ==
         registry::kSuccess;
}

void ContolPanelSounds::RegisterSoundEvents() {
  for (const auto& [event, file] : kOwnEvents) {
    // One that is there may be the user's own choice.
    if (SoundEventExists(kSoundApplication, event)) continue;
    AddSoundEvent(kSoundApplication, event, module_.AppFolder() + file);
  }
  WriteDefaultValue(registry_, "AppEvents\\Schemes\\Tallowin", "Tallowin");
}

}  // namespace tallowin::portsentry
