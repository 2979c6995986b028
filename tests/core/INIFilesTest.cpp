#include "core/INIFiles.h"

#include <gtest/gtest.h>

namespace tallowin::core {
namespace {

/// One value, cut to the buffer as the contract says.
class OneValue : public platform::IniFiles {
 public:
  std::string GetPrivateProfileString(std::string_view, std::string_view, std::string_view,
                                      std::size_t bufferSize) override {
    return value.substr(0, bufferSize - 1);
  }
  bool WritePrivateProfileString(std::string_view fileName, std::string_view section,
                                 std::string_view key, std::string_view newValue) override {
    written = std::string(fileName) + "|" + std::string(section) + "|" + std::string(key);
    value = newValue;
    return accepts;
  }
  std::string value;
  std::string written;
  bool accepts = true;
};

TEST(INIFiles, ReadIniTrimsAndCuts) {
  OneValue files;
  const INIFiles ini(files);
  for (const auto& [stored, read] : std::vector<std::pair<std::string, std::string>>{
           {"", ""},
           {"   ", ""},
           {"  explorer.exe /x ", "explorer.exe /x"},
           {std::string(249, 'a') + "b", std::string(249, 'a')},
           {std::string(248, 'a') + "  b", std::string(248, 'a')}}) {
    files.value = stored;
    EXPECT_EQ(ini.ReadIni("f", "s", "k"), read);
  }
}

TEST(INIFiles, WriteIniPassesOnResult) {
  OneValue files;
  INIFiles ini(files);
  EXPECT_TRUE(ini.WriteIni("file", "section", "key", "value"));
  EXPECT_EQ(files.written, "file|section|key");
  EXPECT_EQ(files.value, "value");
  files.accepts = false;
  EXPECT_FALSE(ini.WriteIni("file", "section", "key", "value"));
}

}  // namespace
}  // namespace tallowin::core
