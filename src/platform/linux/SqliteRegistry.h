// The registry of this host: one SQLite file of the user.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Registry.h"
#include "platform/linux/RegistryStoreFile.h"

namespace tallowin::platform::linux_host {

/// For one thread; any number of processes may work on the same file. Where there is no file, every
/// key is missing, and the first CreateKey makes it. A key's name may have 255 characters and a
/// path 512 names; control characters in names are refused with kInvalidParameter, as is a value of
/// more than a few megabytes with kWriteFault. A file that another process keeps locked holds the
/// caller up for half a second and then gives kWriteFault; for a second from there on at once.
/// What another process writes may be seen a tenth of a millisecond late (RegistryReadCache.h).
class SqliteRegistry final : public Registry {
 public:
  /// `report` is called at once, or by a later operation, when a damaged file was set aside.
  explicit SqliteRegistry(const std::string& path, DamageReport report = {});

  [[nodiscard]] RegistryResult OpenKey(RegistryRoot root, std::string_view path,
                                       std::unique_ptr<RegistryKey>& key) override;
  [[nodiscard]] RegistryResult CreateKey(RegistryRoot root, std::string_view path,
                                         std::unique_ptr<RegistryKey>& key) override;
  /// What was read by ReadValues, and when.
  struct Reading {
    std::vector<StoredValue> values = {};
    std::weak_ptr<RegistryStore> store = {};
    RegistryStore::Version version = {};
  };
  /// All values of a key in their order, none if there is no such key. `reading` is left as it is
  /// where the store has not changed since, and on failure. For who asks again and again.
  [[nodiscard]] RegistryResult ReadValues(RegistryRoot root, std::string_view path,
                                          Reading& reading);
  /// A root itself cannot be removed: kAccessDenied.
  [[nodiscard]] RegistryResult DeleteTree(RegistryRoot root, std::string_view path) override;

  /// What `changes` does to this registry is done as a whole or, where it gives false or the
  /// process is killed, not at all. Other processes cannot write meanwhile, and see nothing of it
  /// before.
  [[nodiscard]] RegistryResult ChangeAsOne(const std::function<bool()>& changes);

 private:
  enum class Purpose { Read, Write, Create };
  [[nodiscard]] RegistryResult Connect(Purpose purpose);

  RegistryStoreFile file_;
  std::shared_ptr<RegistryStore> store_;
  std::chrono::steady_clock::time_point lookedAt_;  ///< whether the file is still the store
};

}  // namespace tallowin::platform::linux_host
