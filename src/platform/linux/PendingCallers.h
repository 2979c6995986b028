// Callers whom the system has handed over and whom nobody has accepted or refused yet.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>

#include "platform/linux/FileDescriptor.h"

namespace tallowin::platform::linux_host {

/// The descriptor is set up so that closing it resets the connection, however the program ends.
struct Caller {
  FileDescriptor socket;
  std::string address;
  int port;
};

class PendingCallers {
 public:
  /// The socket that listened.
  using Owner = const void*;
  static constexpr std::size_t kHeldForEachOwner = 32;

  /// Keeps the caller and gives the number of the request, which is positive. Of too many the
  /// oldest of this owner is reset.
  [[nodiscard]] std::int32_t Hold(Owner owner, Caller caller);

  /// The handler of the request is through. No matter if the number is unknown by now.
  void Handled(std::int32_t requestID);

  /// Resets the oldest caller whose handler is through, whoever owns it; false if there is none.
  bool ResetOldestHandled();

  /// Hands the caller out, a doomed one as well; nothing if the number is unknown.
  [[nodiscard]] std::optional<Caller> Take(std::int32_t requestID);

  /// Marks all callers of the owner for ResetDoomed; false if there are none.
  bool Doom(Owner owner);
  void ResetDoomed();
  void Reset(Owner owner);

 private:
  struct Entry {
    std::int32_t requestID;
    Owner owner;
    bool doomed;
    bool handled;
    Caller caller;
  };
  void ResetExcess(Owner owner);

  std::int32_t lastRequestID_ = 0;
  std::list<Entry> entries_;  ///< oldest first
};

}  // namespace tallowin::platform::linux_host
