#include "platform/linux/LinuxResourceModules.h"

#include <algorithm>

#include "platform/linux/ExecutableFile.h"
#include "platform/linux/StringTable.h"

namespace tallowin::platform::linux_host {
namespace {

bool Enumerate(const std::vector<ResourceId>& ids, const ResourceModule::Callback& callback) {
  return !ids.empty() && std::ranges::all_of(ids, callback);
}

class LinuxResourceModule : public ResourceModule {
 public:
  explicit LinuxResourceModule(std::unique_ptr<PeResources> resources)
      : resources_(std::move(resources)) {}

  bool EnumResourceTypes(const Callback& callback) override {
    return Enumerate(resources_->Types(), callback);
  }
  bool EnumResourceNames(const ResourceId& type, const Callback& callback) override {
    return Enumerate(resources_->Names(type), callback);
  }
  std::string LoadString(std::int32_t id, std::size_t bufferSize) override {
    return strings_.Load(id, bufferSize);
  }

 private:
  std::unique_ptr<PeResources> resources_;
  StringTable strings_{*resources_};
};

}  // namespace

std::unique_ptr<ResourceModule> LinuxResourceModules::LoadLibraryAsDataFile(std::string_view path) {
  auto resources = OpenExecutable(drive_, path);
  if (!resources) return nullptr;
  return std::make_unique<LinuxResourceModule>(std::move(resources));
}

}  // namespace tallowin::platform::linux_host
