// Everything durable: the general settings and the port table, in the current user's registry.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/MainForm.h"
#include "core/Options.h"
#include "core/PortSettings.h"
#include "core/VbRegMod.h"

namespace tallowin::core {

/// Number reads throw RunTimeError 13 or 6 where the value is missing or does not fit 16 bits; text
/// reads give the error text of the registry routine as the value. Writes never fail, and never
/// make a key: the keys come from "defaults.reg".
class SettingsStore {
 public:
  SettingsStore(platform::Registry& registry, MainForm& mainForm, Options& options)
      : registry_(registry), mainForm_(mainForm), options_(options) {}

  PortTable PortSettings;

  [[nodiscard]] std::int16_t ReadSettingNumber(std::string_view name);
  [[nodiscard]] std::string ReadSettingText(std::string_view name);
  void WriteSettingNumber(std::string_view name, std::int32_t value);
  void WriteSettingText(std::string_view name, std::string_view value);

  [[nodiscard]] std::int16_t ReadPortNumber(int slot, std::string_view name);
  [[nodiscard]] std::string ReadPortText(int slot, std::string_view name);
  void WritePortNumber(int slot, std::string_view name, std::int32_t value);
  void WritePortText(int slot, std::string_view name, std::string_view value);

  /// The first number that cannot be read ends the load by its error; what was read before it
  /// stays.
  void LoadPortSettings();
  /// Writes all 15 slots, used or not.
  void SavePortSettings();

  /// Assigns the stored values to the controls of Options, which runs the handler of each box that
  /// changes: this is how services start. Ends by an error like LoadPortSettings.
  void LoadSettings();
  void SaveSettings();

  /// True copies the port table to the snapshot behind Cancel, false copies it back.
  void BackupPortSettings(bool save);

 private:
  VbRegMod registry_;
  MainForm& mainForm_;
  Options& options_;
  PortTable portSettingsBackup_;
};

}  // namespace tallowin::core
