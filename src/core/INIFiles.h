// Keys in INI files, as the watch of the autostart places reads and restores them.
#pragma once

#include <string>
#include <string_view>

#include "platform/IniFiles.h"

namespace tallowin::core {

class INIFiles {
 public:
  explicit INIFiles(platform::IniFiles& files) : files_(files) {}

  /// The value without blanks at its ends; empty if it is missing. The buffer holds 250 characters
  /// and a closing NUL takes one of them: of a longer value the first 249 come back.
  [[nodiscard]] std::string ReadIni(std::string_view fileName, std::string_view section,
                                    std::string_view key) const;

  /// False if the value could not be written.
  bool WriteIni(std::string_view fileName, std::string_view section, std::string_view key,
                std::string_view value);

 private:
  platform::IniFiles& files_;
};

}  // namespace tallowin::core
