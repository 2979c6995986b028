#include "platform/linux/RegistryNames.h"

#include <algorithm>
#include <array>

#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

struct KnownRoot {
  RegistryRoot root;
  std::string_view name;
  std::string_view shortName;
};

constexpr std::array<KnownRoot, 4> kRoots{{
    {RegistryRoot::CurrentUser, "HKEY_CURRENT_USER", "HKCU"},
    {RegistryRoot::LocalMachine, "HKEY_LOCAL_MACHINE", "HKLM"},
    {RegistryRoot::ClassesRoot, "HKEY_CLASSES_ROOT", "HKCR"},
    {RegistryRoot::Users, "HKEY_USERS", "HKU"},
}};

std::string_view TrimBackslashes(std::string_view path) {
  while (path.starts_with('\\')) path.remove_prefix(1);
  while (path.ends_with('\\')) path.remove_suffix(1);
  return path;
}

}  // namespace

std::string_view RootName(RegistryRoot root) {
  const auto* known = std::find_if(kRoots.begin(), kRoots.end(),
                                   [root](const KnownRoot& each) { return each.root == root; });
  return known == kRoots.end() ? std::string_view() : known->name;
}

std::optional<RegistryLocation> ParseRegistryLocation(std::string_view text) {
  const auto end = std::min(text.find('\\'), text.size());
  const std::string name = LowerAscii(text.substr(0, end));
  for (const KnownRoot& known : kRoots) {
    if (name != LowerAscii(known.name) && name != LowerAscii(known.shortName)) continue;
    return RegistryLocation{known.root, std::string(TrimBackslashes(text.substr(end)))};
  }
  return std::nullopt;
}

std::string WriteRegistryLocation(const RegistryLocation& location) {
  std::string text(RootName(location.root));
  if (!location.path.empty()) text += '\\' + location.path;
  return text;
}

std::vector<std::string_view> NamesAlongPath(RegistryRoot root, std::string_view path) {
  if (RootName(root).empty()) return {};
  std::vector<std::string_view> names = Parts(path, '\\');
  const bool defaultUser =
      root == RegistryRoot::Users && !names.empty() && LowerAscii(names.front()) == ".default";
  if (defaultUser) {
    names.front() = RootName(RegistryRoot::CurrentUser);
  } else {
    names.insert(names.begin(), RootName(root));
  }
  return names;
}

}  // namespace tallowin::platform::linux_host
