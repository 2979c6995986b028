// The values of a Run key at one moment: stored ones and live ones, the newest last.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"
#include "platform/linux/AutostartSource.h"
#include "platform/linux/StoredValue.h"

namespace tallowin::platform::linux_host {

struct AutostartRow {
  static constexpr std::size_t kStored = SIZE_MAX;

  std::string name = {};      ///< as it is enumerated; no two rows have the same in any case
  std::string fullName = {};  ///< the same but for very long names and repeated ones
  RegistryValue value = {};   ///< whole
  std::size_t source = kStored;
  AutostartEntry entry = {};  ///< of a live row
};

/// Rows keep their order, and their names, from one listing to the next: what was not there before
/// comes last, whatever the times of its files say. An entry whose command has changed goes behind
/// those that stayed as they were. Only among entries that are new together does the time decide
/// at which they came about.
class AutostartListing {
 public:
  using Live = std::vector<std::vector<AutostartEntry>>;  ///< for each source

  AutostartListing() = default;
  AutostartListing(const AutostartListing& before, const std::vector<StoredValue>& stored,
                   const Live& live);

  [[nodiscard]] const std::vector<AutostartRow>& Rows() const { return rows_; }
  /// By its name, or its full name where that is too long to be enumerated; a stored value in any
  /// case. Null if there is none, also where an entry of a similar name was there before.
  [[nodiscard]] const AutostartRow* Find(std::string_view name) const;

 private:
  std::vector<AutostartRow> rows_;
};

}  // namespace tallowin::platform::linux_host
