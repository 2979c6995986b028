// The registry with the three Run keys as views of what this system starts by itself.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"
#include "platform/linux/AutostartPlaces.h"
#include "platform/linux/AutostartView.h"
#include "platform/linux/UndoneCopies.h"

namespace tallowin::platform::linux_host {

/// Hands everything on to the store, but for the keys
///   HKCU\...\CurrentVersion\Run          the user's XDG autostart entries, enabled user units
///   HKLM\...\CurrentVersion\Run          the system's XDG autostart entries
///   HKLM\...\CurrentVersion\RunServices  enabled system units, @reboot lines of cron
/// whose stored values are followed by live ones. Of these,
/// - EnumValue goes through the state at its index 0 to the end, and shortens names and data that
///   are longer than kEnumerableBytes; QueryValue takes either name and gives the whole;
/// - DeleteValue undoes what a live value stands for and keeps a copy; kAccessDenied if the user
///   may not;
/// - SetValue writes to the stored key.
/// Opening such a key succeeds also where nothing is stored; it fails with kAccessDenied where
/// neither the store nor any of the places can be read. A live value answers to its name exactly as
/// it was enumerated. Keys must not outlive the registry.
class AutostartRegistry final : public Registry {
 public:
  /// `stored` outlives this registry. Nothing is looked at before the first opening of such a key.
  AutostartRegistry(SqliteRegistry& stored, AutostartPlaces places, AutostartTiming timing = {});

  [[nodiscard]] RegistryResult OpenKey(RegistryRoot root, std::string_view path,
                                       std::unique_ptr<RegistryKey>& key) override;
  [[nodiscard]] RegistryResult CreateKey(RegistryRoot root, std::string_view path,
                                         std::unique_ptr<RegistryKey>& key) override;
  [[nodiscard]] RegistryResult DeleteTree(RegistryRoot root, std::string_view path) override {
    return stored_.DeleteTree(root, path);
  }

 private:
  struct View {
    std::string location = {};  // folded names, as of NamesAlongPath
    std::unique_ptr<AutostartView> view = {};
  };

  void AddView(RegistryRoot root, const std::string& key, AutostartView::Sources sources,
               AutostartTiming timing);
  [[nodiscard]] AutostartView* Find(RegistryRoot root, std::string_view path) const;

  SqliteRegistry& stored_;
  const AutostartPlaces places_;
  const UndoneCopies copies_;
  std::vector<View> views_;
};

}  // namespace tallowin::platform::linux_host
