#include "analysis/ModList9x.h"

#include <utility>
#include <vector>

namespace tallowin::analysis {
namespace {

std::string ReplaceAll(std::string text, std::string_view find, std::string_view insert) {
  for (std::size_t at = 0; (at = text.find(find, at)) != std::string::npos; at += insert.size()) {
    text.replace(at, find.size(), insert);
  }
  return text;
}

}  // namespace

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
  path = ReplaceAll(std::move(path), "\\SystemRoot\\",
                    core::AddBackslash(windows, module_.Separator()));
  path = ReplaceAll(std::move(path), "\\??\\", "");
  return path.empty() ? "Error" : path;
}

}  // namespace tallowin::analysis
