// One Run key: its stored values, and what this system really starts.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"
#include "platform/linux/AutostartListing.h"
#include "platform/linux/AutostartSource.h"
#include "platform/linux/FolderWatch.h"
#include "platform/linux/OwnAutostart.h"
#include "platform/linux/SqliteRegistry.h"

namespace tallowin::platform::linux_host {

struct AutostartTiming {
  /// A listing is given out again without any look until nobody has read it for so long. A tick of
  /// the watch enumerates nine times: what comes between the first of these and the last would be
  /// taken for accepted. Half of the time between two ticks, so that each one begins with a look.
  std::chrono::nanoseconds hold = std::chrono::milliseconds(150);
  /// But no longer than this after it was taken, for whoever reads without a pause.
  std::chrono::nanoseconds longestHold = std::chrono::seconds(3);
  /// After so long the files are looked at even if nothing told of a change.
  std::chrono::nanoseconds fullLook = std::chrono::seconds(5);
  /// A look that took longer than this is followed by a pause of ten times as long: somebody may
  /// change files without end, or leave a hundred thousand of them.
  std::chrono::nanoseconds quickLook = std::chrono::milliseconds(25);
};

class AutostartView {
 public:
  using Sources = std::vector<std::unique_ptr<AutostartSource>>;

  /// `stored` outlives the view.
  AutostartView(SqliteRegistry& stored, RegistryRoot root, std::string path, Sources sources,
                OwnAutostart own, AutostartTiming timing);

  /// What is there now. A source that cannot be read for the moment is told of as it was.
  [[nodiscard]] std::shared_ptr<const AutostartListing> List();

  /// False if neither the store nor any of the places could be read.
  [[nodiscard]] bool CanBeRead();

  [[nodiscard]] RegistryResult SetValue(std::string_view name, const RegistryValue& value);
  [[nodiscard]] RegistryResult DeleteValue(std::string_view name);
  [[nodiscard]] RegistryResult EnumKey(std::uint32_t index, std::string& name);

 private:
  using Clock = std::chrono::steady_clock;

  void Poll();
  [[nodiscard]] bool LookIsDue(Clock::time_point now);
  [[nodiscard]] bool Look(Clock::time_point now);
  [[nodiscard]] bool ReadStored();

  SqliteRegistry& registry_;
  RegistryRoot root_;
  std::string path_;
  Sources sources_;
  OwnAutostart own_;
  AutostartTiming timing_;

  SqliteRegistry::Reading stored_;
  bool storeRead_ = false;
  bool placeRead_ = false;
  FolderWatch watch_;
  AutostartListing::Live live_;
  std::shared_ptr<const AutostartListing> listing_;

  bool lookAnew_ = true;  // whatever the time
  bool changed_ = false;  // something was told of since the last look
  Clock::time_point polled_ = {};
  Clock::time_point read_ = {};
  Clock::time_point looked_ = {};
  Clock::duration cost_ = {};  // of the last look
};

}  // namespace tallowin::platform::linux_host
