// Processes that a benchmark has running besides those of the machine.
#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace tallowin::bench {

/// Sleepers, 50 to each copy of the program. They end with this object.
class Sleepers {
 public:
  Sleepers(const std::string& folder, int count) {
    constexpr int kOfEach = 50;
    namespace fs = std::filesystem;
    std::string path;
    for (int i = 0; i < count; ++i) {
      if (i % kOfEach == 0) {
        path = folder + "/sleeper" + std::to_string(i);
        fs::copy_file(fs::canonical("/bin/sleep"), path);
        std::ofstream(path, std::ios::app) << i;
      }
      Start(path);
    }
  }
  Sleepers(const Sleepers&) = delete;
  Sleepers& operator=(const Sleepers&) = delete;
  ~Sleepers() {
    for (const pid_t id : ids_) kill(id, SIGKILL);
    for (const pid_t id : ids_) waitpid(id, nullptr, 0);
  }

 private:
  void Start(std::string& path) {
    std::string time = "1000";
    std::array<char*, 3> arguments = {path.data(), time.data(), nullptr};
    pid_t id = 0;
    if (posix_spawn(&id, path.c_str(), nullptr, nullptr, arguments.data(), environ) == 0) {
      ids_.push_back(id);
    }
  }
  std::vector<pid_t> ids_;
};

}  // namespace tallowin::bench
