// The registry's tables in one open SQLite file.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Registry.h"
#include "platform/linux/RegistryReadCache.h"
#include "platform/linux/SqliteConnection.h"
#include "platform/linux/StoredValue.h"

namespace tallowin::platform::linux_host {

/// A SQLite result code as a result of the registry.
[[nodiscard]] RegistryResult TranslateSqliteResult(int result);

/// A key is known by the number of its row, which is never given to another key. Names are given
/// as they are written together with their folded form, by which they are found. Methods that look
/// for something give kNotFound where it is missing.
class RegistryStore {
 public:
  enum class Condition { Usable, Damaged, OutOfReach };
  struct Opening {
    Condition condition;
    RegistryResult result;  ///< what an operation on this store gives while it is not usable
  };

  /// Keys may outlive the registry that opened them, and share its patience.
  explicit RegistryStore(std::shared_ptr<LockPatience> patience)
      : connection_(std::move(patience)) {}

  /// Opens an existing file and checks all of it; an empty one is furnished with the tables and
  /// the roots. A file that is found damaged is left as it is, its write-ahead log included.
  [[nodiscard]] Opening Open(const std::string& path);
  /// True if this store is no longer the one at its path.
  [[nodiscard]] bool Replaced() const { return connection_.Moved(); }
  [[nodiscard]] SqliteConnection& Connection() { return connection_; }
  /// What is read next comes from the file.
  void ForgetReadings() { cache_.Forget(); }

  [[nodiscard]] RegistryResult FindKey(std::string_view foldedPath, std::int64_t& key);
  [[nodiscard]] RegistryResult InsertKey(std::int64_t parent, std::string_view foldedPath,
                                         std::string_view name, std::int64_t& key);
  /// The key with this path and everything below it.
  [[nodiscard]] RegistryResult DeleteTree(std::string_view foldedPath);

  [[nodiscard]] RegistryResult QueryValue(std::int64_t key, std::string_view foldedName,
                                          RegistryValue& value);
  [[nodiscard]] RegistryResult SetValue(std::int64_t key, std::string_view foldedName,
                                        std::string_view name, const RegistryValue& value);
  [[nodiscard]] RegistryResult DeleteValue(std::int64_t key, std::string_view foldedName);

  /// Row number `index` from 0 in the order of first writing. kNoMoreItems if there is none.
  [[nodiscard]] RegistryResult EnumValue(std::int64_t key, std::uint32_t index, std::string& name,
                                         RegistryValue& value);
  [[nodiscard]] RegistryResult EnumKey(std::int64_t key, std::uint32_t index, std::string& name);
  /// All values in that order, at one look.
  [[nodiscard]] RegistryResult ReadValues(std::int64_t key, std::vector<StoredValue>& values);

  /// Differs from the one before after every change, whoever made it.
  struct Version {
    std::int64_t others = -1;
    std::int64_t own = -1;
    friend bool operator==(const Version&, const Version&) = default;
  };
  [[nodiscard]] RegistryResult ReadVersion(Version& version);

 private:
  struct StatementText {
    SqliteStatement RegistryStore::*statement;
    const char* sql;
  };

  [[nodiscard]] RegistryResult ReadKey(std::string_view foldedPath, std::int64_t& key);
  [[nodiscard]] RegistryResult ReadValue(std::int64_t key, std::string_view foldedName,
                                         RegistryValue& value);
  [[nodiscard]] int Check();
  [[nodiscard]] int Furnish();
  [[nodiscard]] int PrepareStatements();
  [[nodiscard]] RegistryResult EndOfList(std::int64_t key);

  SqliteConnection connection_;
  RegistryReadCache cache_;
  SqliteStatement findKey_;
  SqliteStatement keyExists_;
  SqliteStatement insertKey_;
  SqliteStatement deleteValuesBelow_;
  SqliteStatement deleteKeysBelow_;
  SqliteStatement queryValue_;
  SqliteStatement setValue_;
  SqliteStatement deleteValue_;
  SqliteStatement enumValue_;
  SqliteStatement enumKey_;
  SqliteStatement readValues_;
  SqliteStatement readVersion_;
};

}  // namespace tallowin::platform::linux_host
