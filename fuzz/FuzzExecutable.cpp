// All that is asked of an executable file, asked of any bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>

#include "platform/linux/ByteSource.h"
#include "platform/linux/PeResources.h"
#include "platform/linux/StringTable.h"
#include "platform/linux/VersionTree.h"

namespace {

namespace linux_host = tallowin::platform::linux_host;

/// What a reader of this much may give back: it must never grow with the numbers in the file.
void RequireBounded(std::size_t given, std::size_t allowed) {
  if (given > allowed) std::abort();
}

void ReadStrings(linux_host::PeResources& resources) {
  linux_host::StringTable strings(resources);
  for (const auto& type : resources.Types()) {
    if (!type.IsName() && type.value != 6) continue;
    for (const auto& name : resources.Names(type)) {
      if (name.value > 0x1000) continue;
      const auto first = static_cast<std::int32_t>(name.value) * 16 - 16;
      for (std::int32_t id = first; id <= first + 16; ++id) {
        RequireBounded(strings.Load(id, 255).size(), std::size_t{3} * 254);
      }
    }
  }
}

void ReadVersion(linux_host::PeResources& resources) {
  const auto block = linux_host::VersionTree::Read(resources);
  if (!block) return;
  for (const char* path :
       {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904E4\\FileVersion",
        "\\StringFileInfo\\040904E4\\LegalCopyright", "\\StringFileInfo"}) {
    RequireBounded(block->VerQueryValue(path).value_or("").size(), std::size_t{3} * 0x10000);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto bytes = std::make_unique<linux_host::MemoryBytes>(std::span(data, size));
  const auto resources = linux_host::PeResources::Open(std::move(bytes), 0x409);
  if (!resources) return 0;
  std::size_t names = 0;
  for (const auto& type : resources->Types()) names += type.name.size();
  RequireBounded(names, 2 * size);
  ReadStrings(*resources);
  ReadVersion(*resources);
  return 0;
}
