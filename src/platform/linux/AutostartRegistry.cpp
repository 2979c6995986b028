#include "platform/linux/AutostartRegistry.h"

#include <utility>

#include "platform/linux/AutostartNames.h"
#include "platform/linux/RegistryNames.h"
#include "platform/linux/SystemCron.h"
#include "platform/linux/SystemdUnits.h"
#include "platform/linux/Text.h"
#include "platform/linux/UserCron.h"
#include "platform/linux/XdgAutostart.h"

namespace tallowin::platform::linux_host {
namespace {

std::string Location(RegistryRoot root, std::string_view path) {
  std::string location;
  for (const std::string_view name : NamesAlongPath(root, path)) {
    location += CaseFolded(name) + '\\';
  }
  return location;
}

class AutostartKey final : public RegistryKey {
 public:
  explicit AutostartKey(AutostartView& view) : view_(view) {}

  [[nodiscard]] RegistryResult QueryValue(std::string_view name, RegistryValue& value) override {
    const std::shared_ptr<const AutostartListing> listing = view_.List();
    const AutostartRow* row = listing->Find(name);
    if (row == nullptr) return registry::kNotFound;
    value = row->value;
    return registry::kSuccess;
  }

  [[nodiscard]] RegistryResult SetValue(std::string_view name,
                                        const RegistryValue& value) override {
    return view_.SetValue(name, value);
  }

  [[nodiscard]] RegistryResult DeleteValue(std::string_view name) override {
    return view_.DeleteValue(name);
  }

  [[nodiscard]] RegistryResult EnumValue(std::uint32_t index, std::string& name,
                                         RegistryValue& value) override {
    if (index == 0 || !enumerated_) enumerated_ = view_.List();
    if (index >= enumerated_->Rows().size()) return registry::kNoMoreItems;
    const AutostartRow& row = enumerated_->Rows()[index];
    name = row.name;
    value.type = row.value.type;
    const bool text = value.type == registry::kSz || value.type == registry::kExpandSz;
    value.data = text ? ShortenedText(row.value.data) : row.value.data.substr(0, kEnumerableBytes);
    return registry::kSuccess;
  }

  [[nodiscard]] RegistryResult EnumKey(std::uint32_t index, std::string& name) override {
    return view_.EnumKey(index, name);
  }

 private:
  AutostartView& view_;
  std::shared_ptr<const AutostartListing> enumerated_;
};

}  // namespace

AutostartRegistry::AutostartRegistry(SqliteRegistry& stored, AutostartPlaces places,
                                     AutostartTiming timing)
    : stored_(stored), places_(std::move(places)), copies_(places_.copies) {
  AutostartView::Sources user;
  user.push_back(std::make_unique<XdgAutostart>(XdgAutostart::Of::User, places_, copies_));
  user.push_back(std::make_unique<SystemdUnits>(places_.userUnits, places_.userMeanings, copies_));
  AutostartView::Sources machine;
  machine.push_back(std::make_unique<XdgAutostart>(XdgAutostart::Of::System, places_, copies_));
  AutostartView::Sources services;
  services.push_back(
      std::make_unique<SystemdUnits>(places_.systemUnits, places_.systemMeanings, copies_));
  services.push_back(std::make_unique<SystemCron>(places_, copies_));
  services.push_back(std::make_unique<UserCron>(places_, copies_));

  AddView(RegistryRoot::CurrentUser, "Run", std::move(user), timing);
  AddView(RegistryRoot::LocalMachine, "Run", std::move(machine), timing);
  AddView(RegistryRoot::LocalMachine, "RunServices", std::move(services), timing);
}

void AutostartRegistry::AddView(RegistryRoot root, const std::string& key,
                                AutostartView::Sources sources, AutostartTiming timing) {
  const std::string path = "Software\\Microsoft\\Windows\\CurrentVersion\\" + key;
  views_.push_back(
      {Location(root, path), std::make_unique<AutostartView>(
                                 stored_, root, path, std::move(sources), places_.own, timing)});
}

AutostartView* AutostartRegistry::Find(RegistryRoot root, std::string_view path) const {
  // Settings are read at each connection attempt; they are told apart without folding.
  if (path.size() < 3 || LowerAscii(path).find("run") == std::string::npos) return nullptr;
  const std::string location = Location(root, path);
  for (const View& view : views_) {
    if (view.location == location) return view.view.get();
  }
  return nullptr;
}

RegistryResult AutostartRegistry::OpenKey(RegistryRoot root, std::string_view path,
                                          std::unique_ptr<RegistryKey>& key) {
  AutostartView* const view = Find(root, path);
  if (view == nullptr) return stored_.OpenKey(root, path, key);
  key.reset();
  if (!view->CanBeRead()) return registry::kAccessDenied;
  key = std::make_unique<AutostartKey>(*view);
  return registry::kSuccess;
}

RegistryResult AutostartRegistry::CreateKey(RegistryRoot root, std::string_view path,
                                            std::unique_ptr<RegistryKey>& key) {
  const RegistryResult result = stored_.CreateKey(root, path, key);
  AutostartView* const view = Find(root, path);
  if (view != nullptr && result == registry::kSuccess) key = std::make_unique<AutostartKey>(*view);
  return result;
}

}  // namespace tallowin::platform::linux_host
