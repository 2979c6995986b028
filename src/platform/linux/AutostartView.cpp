#include "platform/linux/AutostartView.h"

#include <algorithm>
#include <utility>

namespace tallowin::platform::linux_host {

AutostartView::AutostartView(SqliteRegistry& stored, RegistryRoot root, std::string path,
                             Sources sources, OwnAutostart own, AutostartTiming timing)
    : registry_(stored),
      root_(root),
      path_(std::move(path)),
      sources_(std::move(sources)),
      own_(std::move(own)),
      timing_(timing),
      live_(sources_.size()),
      listing_(std::make_shared<const AutostartListing>()) {}

std::shared_ptr<const AutostartListing> AutostartView::List() {
  Poll();
  return listing_;
}

void AutostartView::Poll() {
  const Clock::time_point now = Clock::now();
  const bool held = now - read_ < timing_.hold && now - polled_ < timing_.longestHold;
  read_ = now;
  if (!lookAnew_ && held) return;
  polled_ = now;
  bool differs = LookIsDue(now) && Look(now);
  differs = ReadStored() || differs;
  if (differs)
    listing_ = std::make_shared<const AutostartListing>(*listing_, stored_.values, live_);
}

bool AutostartView::LookIsDue(Clock::time_point now) {
  changed_ = watch_.HasChanged() || changed_;
  for (const auto& source : sources_) changed_ = source->HasChanged() || changed_;
  if (lookAnew_) return true;
  const auto passed = now - looked_;
  if (changed_) return cost_ <= timing_.quickLook || passed >= 10 * cost_;
  // Where nothing is known to have changed, a hundredth of the time is enough for looking.
  return passed >= 100 * cost_ && (watch_.MayLoseEvents() || passed >= timing_.fullLook);
}

bool AutostartView::Look(Clock::time_point now) {
  lookAnew_ = false;
  changed_ = false;
  bool differs = false;
  watch_.BeginLook();
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    std::vector<AutostartEntry> entries;
    if (!sources_[i]->Look(watch_, entries)) {
      changed_ = true;
      continue;
    }
    placeRead_ = true;
    std::erase_if(entries, [this](const AutostartEntry& entry) { return own_.Covers(entry); });
    if (entries == live_[i]) continue;
    live_[i] = std::move(entries);
    differs = true;
  }
  watch_.EndLook();
  looked_ = now;
  cost_ = Clock::now() - now;
  return differs;
}

bool AutostartView::ReadStored() {
  const RegistryStore::Version version = stored_.version;
  const std::weak_ptr<RegistryStore> store = stored_.store;
  // A store that is locked for a moment has not lost its values.
  storeRead_ = registry_.ReadValues(root_, path_, stored_) == registry::kSuccess;
  const bool sameStore = !store.owner_before(stored_.store) && !stored_.store.owner_before(store);
  return !sameStore || stored_.version != version;
}

bool AutostartView::CanBeRead() {
  Poll();
  return storeRead_ || placeRead_;
}

RegistryResult AutostartView::SetValue(std::string_view name, const RegistryValue& value) {
  lookAnew_ = true;
  std::unique_ptr<RegistryKey> key;
  const RegistryResult made = registry_.CreateKey(root_, path_, key);
  return made == registry::kSuccess ? key->SetValue(name, value) : made;
}

RegistryResult AutostartView::DeleteValue(std::string_view name) {
  lookAnew_ = true;
  const std::shared_ptr<const AutostartListing> listing = List();
  const AutostartRow* row = listing->Find(name);
  if (row == nullptr) return registry::kNotFound;
  lookAnew_ = true;
  if (row->source != AutostartRow::kStored) return sources_[row->source]->Undo(row->entry);
  std::unique_ptr<RegistryKey> key;
  const RegistryResult opened = registry_.OpenKey(root_, path_, key);
  return opened == registry::kSuccess ? key->DeleteValue(row->fullName) : opened;
}

RegistryResult AutostartView::EnumKey(std::uint32_t index, std::string& name) {
  std::unique_ptr<RegistryKey> key;
  const RegistryResult opened = registry_.OpenKey(root_, path_, key);
  return opened == registry::kSuccess ? key->EnumKey(index, name) : registry::kNoMoreItems;
}

}  // namespace tallowin::platform::linux_host
