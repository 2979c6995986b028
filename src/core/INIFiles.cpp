#include "core/INIFiles.h"

namespace tallowin::core {
namespace {

constexpr std::size_t kBufferSize = 250;

}  // namespace

std::string INIFiles::ReadIni(std::string_view fileName, std::string_view section,
                              std::string_view key) const {
  const std::string value = files_.GetPrivateProfileString(fileName, section, key, kBufferSize);
  const std::size_t first = value.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return value.substr(first, value.find_last_not_of(' ') - first + 1);
}

bool INIFiles::WriteIni(std::string_view fileName, std::string_view section, std::string_view key,
                        std::string_view value) {
  return files_.WritePrivateProfileString(fileName, section, key, value);
}

}  // namespace tallowin::core
