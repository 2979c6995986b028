#include "analysis/ModList9x.h"

#include <utility>
#include <vector>

namespace tallowin::analysis {

std::string TrimAtNull(std::string_view text) {
  const std::size_t nul = text.find('\0');
  return nul == std::string_view::npos ? std::string() : std::string(text.substr(0, nul));
}

std::string ModList9x::ProcessPathFromId(std::uint32_t processId) {
  constexpr std::uint32_t kSystemProcess = 8;
  if (processId == kSystemProcess) return "System";

  std::vector<platform::ModuleEntry> modules;
  const std::uint32_t result = processes_.Modules(processId, modules);
  if (result == platform::processes::kAccessDenied) {
    std::string folder = module_.GetSystemFolder();
    return core::AddBackslash(folder, module_.Separator()) + "csrss.exe";
  }
  std::string path = modules.empty() ? std::string() : std::move(modules.front().exePath);
  std::string windows = module_.GetWindowsFolder();
  path = core::ReplaceAll(path, "\\SystemRoot\\", core::AddBackslash(windows, module_.Separator()));
  path = core::ReplaceAll(path, "\\??\\", "");
  return path.empty() ? "Error" : path;
}

std::string ModList9x::ProgramOf(const platform::ProcessEntry& entry) {
  return module_.IsWin9x() ? TrimAtNull(entry.exeFile) : ProcessPathFromId(entry.processId);
}

bool ModList9x::NamesOneFile(const std::string& path) const {
  return misc_.GetFullPath(path) == path && !misc_.GetShortPath(path).empty();
}

}  // namespace tallowin::analysis
