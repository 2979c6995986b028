// What the kernel shows of a process: its status (the first line), where its program lies (the
// second) and what it has mapped (the others).
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "Check.h"
#include "HostInMemory.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/ProcessFiles.h"

namespace {

using tallowin::fuzz::Require;
namespace linux_host = tallowin::platform::linux_host;
namespace processes = tallowin::platform::processes;

void Write(const std::string& path, std::string_view text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

/// A folder as /proc has one, with one process in it.
std::string MakeFolder(const std::string& root) {
  for (const char* folder : {"", "/7", "/7/task", "/7/task/7"}) {
    mkdir((root + folder).c_str(), S_IRWXU);
  }
  return root;
}

void CheckListing(linux_host::LinuxProcesses& system, const std::string& status) {
  const auto entries = system.Snapshot();
  Require(entries.has_value(), "the folder can be read");
  const auto parsed = linux_host::ParseProcessStatus(status);
  const bool runs = parsed && !parsed->ended && !parsed->kernelThread;
  Require(entries->size() == (runs ? 2U : 1U), "what runs is listed beside the kernel");
  for (const auto& entry : *entries) {
    Require(entry.exeFile.ends_with('\0') && entry.exeFile.size() > 1, "and has a name");
    Require(entry.basePriority >= 4 && entry.basePriority <= 24, "and a priority");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string root = MakeFolder(tallowin::fuzz::TemporaryFolder() + "/proc");
  static linux_host::LinuxProcesses system(root);
  std::string_view maps = tallowin::fuzz::TextOf(data, size);
  const std::string status(tallowin::fuzz::TakeLine(maps));
  const std::string program(tallowin::fuzz::TakeLine(maps));
  for (const char* folder : {"/7", "/7/task/7"}) {
    Write(root + folder + "/stat", status);
    Write(root + folder + "/maps", maps);
  }
  (void)unlink((root + "/7/exe").c_str());
  (void)!symlink(program.c_str(), (root + "/7/exe").c_str());
  CheckListing(system, status.substr(0, 4096));

  std::vector<tallowin::platform::ModuleEntry> modules;
  const auto result = system.Modules(7, modules);
  const auto lines = static_cast<std::size_t>(std::count(maps.begin(), maps.end(), '\n')) + 1;
  Require(result == processes::kSuccess || modules.empty(), "nothing comes of a failure");
  Require(modules.size() <= lines, "each module stands in a line");
  return 0;
}
