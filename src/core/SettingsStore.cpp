#include "core/SettingsStore.h"

#include <array>

namespace tallowin::core {

namespace {

using platform::RegistryRoot;
using platform::RegistryValue;

constexpr RegistryRoot kRoot = RegistryRoot::CurrentUser;
constexpr const char* kSettingsKey = "Software\\Marrowind Software\\Tallowin\\Settings";

std::string PortKey(int slot) {
  return "Software\\Marrowind Software\\Tallowin\\Ports\\Setting " + std::to_string(slot);
}

RegistryValue NumberValue(std::int32_t value) {
  return RegistryValue::Dword(static_cast<std::uint32_t>(value));
}

// The order of these tables is the order of reading and writing.
struct PortNumberField {
  const char* name;
  std::int16_t PortSetting::*field;
};
struct PortTextField {
  const char* name;
  std::string PortSetting::*field;
};
constexpr PortNumberField kSocketNumber{"Socket Number", &PortSetting::SocketNumber};
constexpr std::array<PortTextField, 3> kPortTexts{{
    {"Port Description", &PortSetting::PortDescription},
    {"Packet To Send", &PortSetting::PacketToSend},
    {"Action", &PortSetting::Action},
}};
constexpr std::array<PortNumberField, 6> kPortFlags{{
    {"Sound Siren", &PortSetting::SoundSiren},
    {"Visual Warning", &PortSetting::VisualWarning},
    {"Whois Hacker", &PortSetting::WhoisHacker},
    {"Trace Route Hacker", &PortSetting::TraceRouteHacker},
    {"ShutDown", &PortSetting::ShutDown},
    {"Hang Up Modem", &PortSetting::HangUpModem},
}};

struct BoxSetting {
  const char* name;
  forms::CheckBox Options::*control;
};
// Verbose comes first, so that the lines of the handlers behind it show already.
constexpr std::array<BoxSetting, 6> kBoxes{{
    {"Verbose Mode", &Options::VerboseChk},
    {"Port Sentry", &Options::PortChk},
    {"Trojan Sentry", &Options::ActiveMonChk},
    {"Always On Top", &Options::OnTopChk},
    {"TimeSync", &Options::SyncTimeChk},
    {"IdentD", &Options::IdentDChk},
}};
struct TextSetting {
  const char* name;
  forms::TextBox Options::*control;
};
constexpr std::array<TextSetting, 4> kTexts{{
    {"Email", &Options::EmailTxt},
    {"SMTPServer", &Options::SMTPTxt},
    {"ICQ", &Options::ICQtxt},
    {"IdentDReply", &Options::IdentDTxt},
}};

}  // namespace

std::int16_t SettingsStore::ReadSettingNumber(std::string_view name) {
  return ToInteger(registry_.QueryRegValue(kRoot, kSettingsKey, name));
}

std::string SettingsStore::ReadSettingText(std::string_view name) {
  return ToText(registry_.QueryRegValue(kRoot, kSettingsKey, name));
}

void SettingsStore::WriteSettingNumber(std::string_view name, std::int32_t value) {
  registry_.SetRegValue(kRoot, kSettingsKey, name, NumberValue(value));
}

void SettingsStore::WriteSettingText(std::string_view name, std::string_view value) {
  registry_.SetRegValue(kRoot, kSettingsKey, name, RegistryValue::Text(value));
}

std::int16_t SettingsStore::ReadPortNumber(int slot, std::string_view name) {
  return ToInteger(registry_.QueryRegValue(kRoot, PortKey(slot), name));
}

std::string SettingsStore::ReadPortText(int slot, std::string_view name) {
  return ToText(registry_.QueryRegValue(kRoot, PortKey(slot), name));
}

void SettingsStore::WritePortNumber(int slot, std::string_view name, std::int32_t value) {
  registry_.SetRegValue(kRoot, PortKey(slot), name, NumberValue(value));
}

void SettingsStore::WritePortText(int slot, std::string_view name, std::string_view value) {
  registry_.SetRegValue(kRoot, PortKey(slot), name, RegistryValue::Text(value));
}

void SettingsStore::LoadPortSettings() {
  for (int slot = kFirstSlot; slot <= kLastSlot; ++slot) {
    PortSetting& setting = PortSettings(slot);
    setting.*kSocketNumber.field = ReadPortNumber(slot, kSocketNumber.name);
    for (const auto& text : kPortTexts) setting.*text.field = ReadPortText(slot, text.name);
    for (const auto& flag : kPortFlags) setting.*flag.field = ReadPortNumber(slot, flag.name);
  }
}

void SettingsStore::SavePortSettings() {
  for (int slot = kFirstSlot; slot <= kLastSlot; ++slot) {
    const PortSetting& setting = PortSettings(slot);
    WritePortNumber(slot, kSocketNumber.name, setting.*kSocketNumber.field);
    for (const auto& text : kPortTexts) WritePortText(slot, text.name, setting.*text.field);
    for (const auto& flag : kPortFlags) WritePortNumber(slot, flag.name, setting.*flag.field);
  }
}

void SettingsStore::LoadSettings() {
  for (const auto& box : kBoxes) (options_.*box.control).SetValue(ReadSettingNumber(box.name));
  for (const auto& text : kTexts) (options_.*text.control).SetText(ReadSettingText(text.name));
  // A box that is off takes nothing away here: a restore of the window is what ends topmost.
  if (options_.OnTopChk.Value() == forms::CheckBox::Checked) mainForm_.SetTopMost(true);
}

void SettingsStore::SaveSettings() {
  for (const auto& box : kBoxes) WriteSettingNumber(box.name, (options_.*box.control).Value());
  for (const auto& text : kTexts) WriteSettingText(text.name, (options_.*text.control).Text());
}

void SettingsStore::BackupPortSettings(bool save) {
  if (save) {
    portSettingsBackup_ = PortSettings;
  } else {
    PortSettings = portSettingsBackup_;
  }
}

}  // namespace tallowin::core
