#include "core/INIFiles.h"

#include "core/MiscRoutines.h"

namespace tallowin::core {
namespace {

constexpr std::size_t kBufferSize = 250;

}  // namespace

std::string INIFiles::ReadIni(std::string_view fileName, std::string_view section,
                              std::string_view key) const {
  return std::string(Trim(files_.GetPrivateProfileString(fileName, section, key, kBufferSize)));
}

bool INIFiles::WriteIni(std::string_view fileName, std::string_view section, std::string_view key,
                        std::string_view value) {
  return files_.WritePrivateProfileString(fileName, section, key, value);
}

}  // namespace tallowin::core
