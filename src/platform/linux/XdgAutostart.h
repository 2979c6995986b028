// The desktop entries that a session starts at login.
#pragma once

#include <memory>
#include <set>
#include <string>

#include "platform/linux/AutostartPlaces.h"
#include "platform/linux/AutostartSource.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/ParsedFiles.h"
#include "platform/linux/UndoneCopies.h"

namespace tallowin::platform::linux_host {

/// An entry in a folder hides those of the same name in folders behind it, the user's goes first.
class XdgAutostart final : public AutostartSource {
 public:
  /// Whose entries are told of; both folders are looked at in either case.
  enum class Of { User, System };

  /// `places` and `copies` outlive the source.
  XdgAutostart(Of of, const AutostartPlaces& places, const UndoneCopies& copies)
      : of_(of), places_(places), copies_(copies) {}

  [[nodiscard]] bool Look(FolderWatch& watch, std::vector<AutostartEntry>& entries) override;
  /// The file is moved away. A system's entry that a user's one has hidden comes into force again.
  [[nodiscard]] RegistryResult Undo(const AutostartEntry& entry) override {
    return copies_.MoveAway(entry.files);
  }

 private:
  [[nodiscard]] bool LookInto(const std::string& folder, bool told, std::set<std::string>& hidden,
                              std::vector<AutostartEntry>& entries);
  [[nodiscard]] bool Starts(const DesktopEntry& entry) const;

  Of of_;
  const AutostartPlaces& places_;
  const UndoneCopies& copies_;
  ParsedFiles<DesktopEntry> files_{std::size_t{1} << 20U};
};

}  // namespace tallowin::platform::linux_host
