// A systemd unit file, as far as it tells what the unit runs.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/ForeignFiles.h"

namespace tallowin::platform::linux_host {

/// "foo@bar.service" has the prefix "foo", the instance "bar" and the type "service".
struct UnitName {
  std::string prefix = {};
  std::string instance = {};
  std::string type = {};
  bool hasInstance = false;  ///< there is an "@"; "foo@.service" is a template

  /// `type` is empty if this cannot be the name of a unit.
  [[nodiscard]] static UnitName Parse(std::string_view name);
  [[nodiscard]] bool IsValid() const { return !type.empty(); }
  [[nodiscard]] bool IsTemplate() const { return hasInstance && instance.empty(); }
  [[nodiscard]] std::string Template() const { return prefix + "@." + type; }
  [[nodiscard]] std::string Text() const;
};

/// What units mean by the letters behind a percent sign, but for those that tell of the unit
/// itself.
using UnitMeanings = std::map<char, std::string>;

/// One file, a fragment or a drop-in: its assignments in their order.
struct UnitFile {
  struct Assignment {
    std::string key = {};
    std::string value = {};
  };

  explicit UnitFile(const BoundedText& file);

  std::vector<Assignment> assignments = {};  ///< of the keys that matter here
};

/// What a fragment with its drop-ins comes to.
class UnitCommands {
 public:
  void Apply(const UnitFile& file);

  /// What the unit runs: the main commands, or the ones around them where it has no main command.
  /// Cut at 128 KiB.
  [[nodiscard]] std::string Command(const UnitName& unit, const UnitMeanings& meanings) const;
  /// The unit that a timer, path or socket unit names for itself to start. Empty if it names none.
  [[nodiscard]] std::string Activated(const UnitName& unit, const UnitMeanings& meanings) const;

 private:
  [[nodiscard]] const std::vector<std::string>& Values(const std::string& key) const;

  std::map<std::string, std::vector<std::string>> values_;
};

}  // namespace tallowin::platform::linux_host
