// Where the registry's store lies on disk: how it comes into being, is opened and is set aside.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Registry.h"
#include "platform/linux/LockPatience.h"
#include "platform/linux/RegistryStore.h"

namespace tallowin::platform::linux_host {

/// Told the path under which a damaged store has been set aside.
using DamageReport = std::function<void(const std::string& setAsidePath)>;

/// Several processes may open the same file at the same time: one after the other looks for damage,
/// so that none sets aside the new store of another.
class RegistryStoreFile {
 public:
  RegistryStoreFile(const std::string& path, DamageReport report);

  /// Opens the store. A damaged one is renamed together with its log files, and an empty store
  /// takes its place. Where there is no file yet, it is made if `create` is true; kNotFound
  /// otherwise. What cannot be reached for want of rights, or because the disk is full or another
  /// process does not let go of the file, is left as it is: kAccessDenied or kWriteFault.
  [[nodiscard]] RegistryResult Open(bool create, std::shared_ptr<RegistryStore>& store);

 private:
  [[nodiscard]] RegistryResult OpenChecked(bool maySetAside, std::shared_ptr<RegistryStore>& store);
  [[nodiscard]] bool SetAside();
  [[nodiscard]] bool LogWithoutStore() const;

  std::string path_;
  DamageReport report_;
  std::shared_ptr<LockPatience> patience_ = std::make_shared<LockPatience>();
};

}  // namespace tallowin::platform::linux_host
