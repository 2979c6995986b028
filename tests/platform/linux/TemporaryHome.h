// A home of its own for a test of this host, and what such tests do with files.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/linux/LinuxFolders.h"

namespace tallowin::platform::linux_host::test {

inline void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

inline std::string FileText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class TemporaryHome {
 public:
  TemporaryHome() {
    std::string pattern = (std::filesystem::temp_directory_path() / "Tallowin-h\xC3\xB6m-XXXXXX");
    path_ = mkdtemp(pattern.data());
  }
  TemporaryHome(const TemporaryHome&) = delete;
  TemporaryHome& operator=(const TemporaryHome&) = delete;
  ~TemporaryHome() { std::filesystem::remove_all(path_); }

  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] LinuxFolders Folders() const {
    return {.config = path_ + "/config",
            .data = path_ + "/data",
            .program = path_ + "/data",
            .installedData = path_ + "/installed",
            .home = path_};
  }

 private:
  std::string path_;
};

}  // namespace tallowin::platform::linux_host::test
