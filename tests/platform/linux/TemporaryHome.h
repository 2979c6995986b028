// A home of its own for a test of this host, and what such tests do with files.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

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

class NoDescriptors {
 public:
  NoDescriptors() {
    (void)getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit none = {.rlim_cur = 0, .rlim_max = before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  ~NoDescriptors() { (void)setrlimit(RLIMIT_NOFILE, &before_); }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  rlimit before_ = {};
};

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
