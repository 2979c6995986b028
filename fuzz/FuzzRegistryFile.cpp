// A registry file is imported, exported, and what was exported imported and exported once more.
#include <memory>
#include <string>

#include "Check.h"
#include "HostInMemory.h"
#include "platform/linux/RegistryFile.h"
#include "platform/linux/RegistryFileWriter.h"
#include "platform/linux/RegistryText.h"
#include "platform/linux/SqliteRegistry.h"

namespace {

namespace linux_host = tallowin::platform::linux_host;
namespace registry = tallowin::platform::registry;
using tallowin::fuzz::Require;
using tallowin::platform::RegistryRoot;

constexpr RegistryRoot kRoots[] = {RegistryRoot::CurrentUser, RegistryRoot::LocalMachine,
                                   RegistryRoot::ClassesRoot, RegistryRoot::Users};

void Empty(tallowin::platform::Registry& store) {
  for (const RegistryRoot root : kRoots) {
    std::unique_ptr<tallowin::platform::RegistryKey> key;
    if (store.OpenKey(root, "", key) != registry::kSuccess) continue;
    std::string name;
    tallowin::platform::RegistryValue value;
    while (key->EnumValue(0, name, value) == registry::kSuccess) {
      Require(key->DeleteValue(name) == registry::kSuccess, "a value that is listed goes");
    }
    while (key->EnumKey(0, name) == registry::kSuccess) {
      Require(store.DeleteTree(root, name) == registry::kSuccess, "a key that is listed goes");
    }
  }
}

std::string Export(tallowin::platform::Registry& store) {
  linux_host::RegistryFileWriter writer(store);
  for (const RegistryRoot root : kRoots) {
    const auto result = writer.Add({root, ""});
    Require(result == registry::kSuccess || result == registry::kNotFound,
            "what was imported can be exported");
  }
  return writer.Text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static linux_host::SqliteRegistry first(tallowin::fuzz::TemporaryFolder() + "/first");
  static linux_host::SqliteRegistry second(tallowin::fuzz::TemporaryFolder() + "/second");
  Empty(first);
  Empty(second);
  const std::string_view content = tallowin::fuzz::TextOf(data, size);
  const auto result = linux_host::ImportRegistryText(content, first);
  Require(result.ok == result.reason.empty(), "a failure has a reason");
  Require(tallowin::fuzz::IsPlainLine(result.reason), "nothing of the file is in the reason");

  const std::string exported = Export(first);
  const std::string file = "\xFF\xFE" + linux_host::ToUtf16(exported);
  const auto again = linux_host::ImportRegistryText(file, second);
  Require(again.ok, "what was exported can be imported");
  Require(Export(second) == exported, "and is the same then");
  return 0;
}
