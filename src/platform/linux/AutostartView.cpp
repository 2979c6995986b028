#include "platform/linux/AutostartView.h"

#include <algorithm>
#include <utility>

namespace tallowin::platform::linux_host {

AutostartView::AutostartView(Registry& stored, RegistryRoot root, std::string path, Sources sources,
                             AutostartTiming timing)
    : registry_(stored),
      root_(root),
      path_(std::move(path)),
      sources_(std::move(sources)),
      timing_(timing),
      live_(sources_.size()),
      listing_(std::make_shared<const AutostartListing>()) {}

std::shared_ptr<const AutostartListing> AutostartView::List() {
  Poll();
  return listing_;
}

void AutostartView::Poll() {
  const Clock::time_point now = Clock::now();
  if (!lookAnew_ && now - polled_ < timing_.hold) return;
  polled_ = now;
  bool differs = LookIsDue(now) && Look(now);
  differs = ReadStored() || differs;
  if (differs) listing_ = std::make_shared<const AutostartListing>(*listing_, stored_, live_);
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
    } else if (entries != live_[i]) {
      live_[i] = std::move(entries);
      differs = true;
    }
  }
  watch_.EndLook();
  looked_ = now;
  cost_ = Clock::now() - now;
  return differs;
}

RegistryResult AutostartView::OpenStored() {
  return key_ ? registry::kSuccess : registry_.OpenKey(root_, path_, key_);
}

RegistryResult AutostartView::EnumStored(std::vector<StoredValue>& values) {
  RegistryResult result = OpenStored();
  while (result == registry::kSuccess) {
    StoredValue value;
    const auto index = static_cast<std::uint32_t>(values.size());
    result = key_->EnumValue(index, value.name, value.value);
    if (result == registry::kSuccess) values.push_back(std::move(value));
  }
  return result;
}

bool AutostartView::ReadStored() {
  std::vector<StoredValue> values;
  const RegistryResult result = EnumStored(values);
  // A store that is locked for a moment has not lost its values.
  if (result != registry::kNoMoreItems && result != registry::kNotFound) return false;
  if (result == registry::kNotFound) {
    key_.reset();
    values.clear();
  }
  if (values == stored_) return false;
  stored_ = std::move(values);
  return true;
}

RegistryResult AutostartView::SetValue(std::string_view name, const RegistryValue& value) {
  if (!key_) {
    const RegistryResult made = registry_.CreateKey(root_, path_, key_);
    if (made != registry::kSuccess) return made;
  }
  lookAnew_ = true;
  return key_->SetValue(name, value);
}

RegistryResult AutostartView::DeleteValue(std::string_view name) {
  lookAnew_ = true;
  const std::shared_ptr<const AutostartListing> listing = List();
  const AutostartRow* row = listing->Find(name);
  if (row == nullptr) return registry::kNotFound;
  lookAnew_ = true;
  if (row->source != AutostartRow::kStored) return sources_[row->source]->Undo(row->entry);
  const RegistryResult opened = OpenStored();
  return opened == registry::kSuccess ? key_->DeleteValue(row->fullName) : opened;
}

RegistryResult AutostartView::EnumKey(std::uint32_t index, std::string& name) {
  return OpenStored() == registry::kSuccess ? key_->EnumKey(index, name) : registry::kNoMoreItems;
}

}  // namespace tallowin::platform::linux_host
