#include "platform/linux/FirstStart.h"

#include "platform/linux/RegistryFile.h"

namespace tallowin::platform::linux_host {
namespace {

constexpr std::string_view kOwnKey = R"(Software\Marrowind Software\Tallowin)";

bool OwnKeyIsMissing(Registry& registry) {
  std::unique_ptr<RegistryKey> key;
  return registry.OpenKey(RegistryRoot::CurrentUser, kOwnKey, key) == registry::kNotFound;
}

}  // namespace

std::string ImportPresetsOnce(SqliteRegistry& registry, const std::string& presets) {
  if (!OwnKeyIsMissing(registry)) return {};
  RegistryFileResult import;
  const RegistryResult stored = registry.ChangeAsOne([&] {
    // Another program may have been quicker.
    if (OwnKeyIsMissing(registry)) import = ImportRegistryFile(presets, registry);
    return import.ok;
  });
  if (import.ok && stored == registry::kSuccess) return {};
  return "the presets in " + presets +
         " could not be imported: " + (import.ok ? DescribeRegistryResult(stored) : import.reason);
}

}  // namespace tallowin::platform::linux_host
