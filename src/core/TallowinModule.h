// What start-up sets once for everybody: names, version, paths; and the routines on folders.
#pragma once

#include <array>
#include <string>
#include <utility>

#include "core/Endpoints.h"
#include "forms/Form.h"
#include "platform/OperatingSystem.h"
#include "platform/Paths.h"

namespace tallowin::core {

/// Appends `separator` unless the last character already is one; changes the argument and also
/// returns it.
std::string AddBackslash(std::string& path, char separator);

void SetTopMost(forms::Form& window);
void ClearTopMost(forms::Form& window);

class TallowinModule {
 public:
  TallowinModule(platform::Paths& paths, platform::OperatingSystem& system,
                 Endpoints endpoints = {})
      : paths_(paths), system_(system), endpoints_(std::move(endpoints)) {}

  std::string ProductTitle;
  std::string AppVersion;
  std::array<std::string, 5> WhoisServers;  ///< 1 to 4; 0 is unused
  std::string SystemIniPath;
  std::string WinIniPath;

  /// "4.11" for major 4, minor 1, revision 1: nothing stands between the last two.
  void SetAppVersion(int major, int minor, int revision);
  void SetWhoisServers();
  /// Both upper-cased as a whole (A to Z only).
  void SetIniPaths();

  [[nodiscard]] bool IsWin9x() const;
  /// 1 Windows 95, 2 Windows 98, 3 to 5 the major version of the NT family, 0 anything else.
  [[nodiscard]] int GetOsKind() const;

  /// The program's folder with a separator at its end.
  [[nodiscard]] std::string AppFolder() const;
  [[nodiscard]] std::string GetWindowsFolder() const { return paths_.WindowsFolder(); }
  [[nodiscard]] std::string GetSystemFolder() const { return paths_.SystemFolder(); }
  [[nodiscard]] char Separator() const { return paths_.Separator(); }

 private:
  platform::Paths& paths_;
  platform::OperatingSystem& system_;
  Endpoints endpoints_;
};

}  // namespace tallowin::core
