#include "platform/linux/SqliteRegistry.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/linux/RegistryNames.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

using Names = std::vector<std::string_view>;

constexpr std::size_t kMaxNamesOfAPath = 512;
constexpr std::size_t kMaxBytesOfAKeyName = std::size_t{4} * 255;
constexpr std::size_t kMaxBytesOfAValueName = std::size_t{4} * 16383;

/// The export format has no way to write a control character in a name.
bool IsStorable(std::string_view name, std::size_t maxBytes) {
  return name.size() <= maxBytes && std::none_of(name.begin(), name.end(), [](char c) {
           return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
         });
}

bool IsStorable(const Names& path) {
  return path.size() <= kMaxNamesOfAPath &&
         std::all_of(path.begin(), path.end(),
                     [](std::string_view name) { return IsStorable(name, kMaxBytesOfAKeyName); });
}

std::string FoldPath(const Names& path) {
  std::string text;
  for (const std::string_view name : path) {
    if (!text.empty()) text += '\\';
    text += CaseFolded(name);
  }
  return text;
}

// A file is replaced by hand, if ever, and each connection attempt reads a handful of values, which
// lie this close together. Writing always looks.
constexpr std::chrono::microseconds kTrustInTheFile{100};

class SqliteRegistryKey final : public RegistryKey {
 public:
  SqliteRegistryKey(std::shared_ptr<RegistryStore> store, std::int64_t key)
      : store_(std::move(store)), key_(key) {}

  [[nodiscard]] RegistryResult QueryValue(std::string_view name, RegistryValue& value) override {
    return store_->QueryValue(key_, CaseFolded(name), value);
  }

  [[nodiscard]] RegistryResult SetValue(std::string_view name,
                                        const RegistryValue& value) override {
    if (!IsStorable(name, kMaxBytesOfAValueName)) return registry::kInvalidParameter;
    // What is written to a file that was set aside in the meantime would be lost unnoticed.
    if (store_->Replaced()) return registry::kNotFound;
    return store_->SetValue(key_, CaseFolded(name), name, value);
  }

  [[nodiscard]] RegistryResult DeleteValue(std::string_view name) override {
    if (store_->Replaced()) return registry::kNotFound;
    return store_->DeleteValue(key_, CaseFolded(name));
  }

  [[nodiscard]] RegistryResult EnumValue(std::uint32_t index, std::string& name,
                                         RegistryValue& value) override {
    return store_->EnumValue(key_, index, name, value);
  }

  [[nodiscard]] RegistryResult EnumKey(std::uint32_t index, std::string& name) override {
    return store_->EnumKey(key_, index, name);
  }

 private:
  std::shared_ptr<RegistryStore> store_;
  std::int64_t key_;
};

RegistryResult MakeMissingKeys(RegistryStore& store, const Names& path, std::int64_t& key) {
  SqliteTransaction transaction(store.Connection());
  int outcome = transaction.Begin();
  if (TranslateSqliteResult(outcome) != registry::kSuccess) return TranslateSqliteResult(outcome);
  store.ForgetReadings();  // Only from here on do other processes leave the keys as they are.
  std::string folded;
  std::int64_t parent = 0;
  for (const std::string_view name : path) {
    if (!folded.empty()) folded += '\\';
    folded += CaseFolded(name);
    RegistryResult result = store.FindKey(folded, key);
    if (result == registry::kNotFound) result = store.InsertKey(parent, folded, name, key);
    if (result != registry::kSuccess) return result;
    parent = key;
  }
  outcome = transaction.Commit();
  return TranslateSqliteResult(outcome);
}

}  // namespace

SqliteRegistry::SqliteRegistry(const std::string& path, DamageReport report)
    : file_(path, std::move(report)) {
  // Damage is looked for now and not at the first use. Why the store cannot be opened is told by
  // each operation, which tries again.
  static_cast<void>(Connect(Purpose::Read));
}

RegistryResult SqliteRegistry::Connect(Purpose purpose) {
  const auto now = std::chrono::steady_clock::now();
  if (store_ && purpose == Purpose::Read && now - lookedAt_ < kTrustInTheFile)
    return registry::kSuccess;
  lookedAt_ = now;
  if (store_ && !store_->Replaced()) return registry::kSuccess;
  store_.reset();
  return file_.Open(purpose == Purpose::Create, store_);
}

RegistryResult SqliteRegistry::OpenKey(RegistryRoot root, std::string_view path,
                                       std::unique_ptr<RegistryKey>& key) {
  key.reset();
  const Names names = NamesAlongPath(root, path);
  if (names.empty()) return registry::kNotFound;
  RegistryResult result = Connect(Purpose::Read);
  if (result != registry::kSuccess) return result;
  std::int64_t number = 0;
  result = store_->FindKey(FoldPath(names), number);
  if (result == registry::kSuccess) key = std::make_unique<SqliteRegistryKey>(store_, number);
  return result;
}

RegistryResult SqliteRegistry::CreateKey(RegistryRoot root, std::string_view path,
                                         std::unique_ptr<RegistryKey>& key) {
  key.reset();
  const Names names = NamesAlongPath(root, path);
  if (names.empty()) return registry::kNotFound;
  if (!IsStorable(names)) return registry::kInvalidParameter;
  RegistryResult result = Connect(Purpose::Create);
  if (result != registry::kSuccess) return result;
  std::int64_t number = 0;
  result = store_->FindKey(FoldPath(names), number);
  if (result == registry::kNotFound) result = MakeMissingKeys(*store_, names, number);
  if (result == registry::kSuccess) key = std::make_unique<SqliteRegistryKey>(store_, number);
  return result;
}

RegistryResult SqliteRegistry::ReadValues(RegistryRoot root, std::string_view path,
                                          Reading& reading) {
  RegistryResult result = Connect(Purpose::Read);
  if (result == registry::kNotFound) {
    reading = {};
    return registry::kSuccess;
  }
  if (result != registry::kSuccess) return result;
  Reading now{.store = store_};
  result = store_->ReadVersion(now.version);
  if (result != registry::kSuccess) return result;
  if (reading.store.lock() == store_ && reading.version == now.version) return result;
  store_->ForgetReadings();  // They may be older than the version.
  std::int64_t number = 0;
  result = store_->FindKey(FoldPath(NamesAlongPath(root, path)), number);
  if (result == registry::kSuccess) result = store_->ReadValues(number, now.values);
  if (result != registry::kSuccess && result != registry::kNotFound) return result;
  reading = std::move(now);
  return registry::kSuccess;
}

RegistryResult SqliteRegistry::DeleteTree(RegistryRoot root, std::string_view path) {
  const Names names = NamesAlongPath(root, path);
  if (names.empty()) return registry::kNotFound;
  if (names.size() == 1) return registry::kAccessDenied;
  const RegistryResult result = Connect(Purpose::Write);
  return result == registry::kSuccess ? store_->DeleteTree(FoldPath(names)) : result;
}

RegistryResult SqliteRegistry::ChangeAsOne(const std::function<bool()>& changes) {
  const RegistryResult result = Connect(Purpose::Create);
  if (result != registry::kSuccess) return result;
  const std::shared_ptr<RegistryStore> store = store_;
  SqliteTransaction transaction(store->Connection());
  int outcome = transaction.Begin();
  if (TranslateSqliteResult(outcome) != registry::kSuccess) return TranslateSqliteResult(outcome);
  store->ForgetReadings();
  if (changes()) {
    outcome = transaction.Commit();
  }
  // What was read meanwhile may be taken back.
  store->ForgetReadings();
  return TranslateSqliteResult(outcome);
}

}  // namespace tallowin::platform::linux_host
