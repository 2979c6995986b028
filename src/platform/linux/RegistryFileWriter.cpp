#include "platform/linux/RegistryFileWriter.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "platform/linux/RegistryFileData.h"

namespace tallowin::platform::linux_host {
namespace {

/// A line end in a name would forge a statement.
bool IsWritable(const std::string& name) {
  return std::none_of(name.begin(), name.end(),
                      [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

RegistryResult ListSubkeys(RegistryKey& key, const RegistryLocation& location,
                           std::vector<RegistryLocation>& subkeys) {
  std::string name;
  RegistryResult result = registry::kSuccess;
  for (std::uint32_t i = 0; (result = key.EnumKey(i, name)) == registry::kSuccess; ++i) {
    const std::string path = location.path.empty() ? name : location.path + '\\' + name;
    subkeys.push_back({location.root, path});
  }
  return result == registry::kNoMoreItems ? registry::kSuccess : result;
}

}  // namespace

RegistryFileWriter::RegistryFileWriter(Registry& registry)
    : registry_(registry), text_("Windows Registry Editor Version 5.00\r\n\r\n") {}

RegistryResult RegistryFileWriter::Add(const RegistryLocation& key) {
  std::vector<RegistryLocation> waiting{key};
  while (!waiting.empty()) {
    const RegistryLocation location = std::move(waiting.back());
    waiting.pop_back();
    const std::string name = WriteRegistryLocation(location);
    if (!IsWritable(name)) return registry::kInvalidParameter;
    std::unique_ptr<RegistryKey> open;
    RegistryResult result = registry_.OpenKey(location.root, location.path, open);
    if (result != registry::kSuccess) return result;
    text_ += '[' + name + "]\r\n";
    result = AddValues(*open);
    if (result != registry::kSuccess) return result;
    text_ += "\r\n";
    std::vector<RegistryLocation> subkeys;
    result = ListSubkeys(*open, location, subkeys);
    if (result != registry::kSuccess) return result;
    waiting.insert(waiting.end(), subkeys.rbegin(), subkeys.rend());
  }
  return registry::kSuccess;
}

RegistryResult RegistryFileWriter::AddValues(RegistryKey& key) {
  std::string name;
  RegistryValue value;
  RegistryResult result = registry::kSuccess;
  for (std::uint32_t i = 0; (result = key.EnumValue(i, name, value)) == registry::kSuccess; ++i) {
    if (!IsWritable(name)) return registry::kInvalidParameter;
    const std::string start = (name.empty() ? "@" : Quote(name)) + '=';
    text_ += start + WriteValueData(value, start.size()) + "\r\n";
  }
  return result == registry::kNoMoreItems ? registry::kSuccess : result;
}

}  // namespace tallowin::platform::linux_host
