#include "core/TallowinModule.h"

#include <algorithm>

#include "core/MiscRoutines.h"

namespace tallowin::core {

namespace {

constexpr std::uint32_t kPlatformWin9x = 1;
constexpr std::uint32_t kPlatformNt = 2;

}  // namespace

std::string AddBackslash(std::string& path, char separator) {
  if (!path.ends_with(separator)) path += separator;
  return path;
}

void SetTopMost(forms::Form& window) { window.SetTopMost(true); }

void ClearTopMost(forms::Form& window) { window.SetTopMost(false); }

void TallowinModule::SetAppVersion(int major, int minor, int revision) {
  AppVersion = std::to_string(major) + "." + std::to_string(minor) + std::to_string(revision);
}

void TallowinModule::SetWhoisServers() {
  std::copy(endpoints_.whoisServers.begin(), endpoints_.whoisServers.end(),
            WhoisServers.begin() + 1);
}

void TallowinModule::SetIniPaths() {
  std::string folder = GetWindowsFolder();
  AddBackslash(folder, Separator());
  SystemIniPath = UpperCase(folder + "system.ini");
  WinIniPath = UpperCase(folder + "win.ini");
}

bool TallowinModule::IsWin9x() const { return system_.GetVersion().platformId == kPlatformWin9x; }

int TallowinModule::GetOsKind() const {
  const platform::OsVersion version = system_.GetVersion();
  if (version.platformId == kPlatformWin9x) {
    if (version.minorVersion == 0) return 1;
    return version.minorVersion == 10 ? 2 : 0;
  }
  const bool known = version.majorVersion >= 3 && version.majorVersion <= 5;
  return version.platformId == kPlatformNt && known ? static_cast<int>(version.majorVersion) : 0;
}

std::string TallowinModule::AppFolder() const {
  std::string folder = paths_.ProgramFolder();
  return AddBackslash(folder, Separator());
}

}  // namespace tallowin::core
