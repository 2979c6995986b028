// The decoy listeners: opened and closed as a whole.
#pragma once

#include <functional>

#include "core/ErrorRegimes.h"
#include "core/Form1.h"
#include "core/SettingsStore.h"
#include "core/SocketArray.h"
#include "core/StatusLog.h"
#include "platform/EventLoop.h"

namespace tallowin::portsentry {

/// Element i of both rows belongs to slot i of the port table; there is no other mapping.
struct PortSockets {
  core::SocketArray Listen;
  core::SocketArray Accept;  ///< takes over the caller who came in on Listen of the same number
};

class PortListeners {
 public:
  PortListeners(PortSockets& sockets, core::SettingsStore& settings, core::Form1& form1,
                core::StatusLog& log, platform::EventLoop& loop)
      : sockets_(sockets), settings_(settings), form1_(form1), log_(log), loop_(loop) {}

  /// Opens the listeners of all used slots. A port that cannot be opened is logged and leaves the
  /// others up; nothing else remembers it.
  void ActivatePortSentry();

  /// Closes the listeners and callers of the slots that the table names as used at this moment. A
  /// slot that was emptied since keeps its listener.
  void DeactivatePortSentry();

  /// Rebuilds, and says so.
  void UpdateWinsocks();

  [[nodiscard]] bool PortSentryActive() const { return portSentryActive_; }

 private:
  void OpenSlot(int slot, core::ResumeOnError& statement);
  void ReportFailure(int slot, const platform::RunTimeError& error);

  PortSockets& sockets_;
  core::SettingsStore& settings_;
  core::Form1& form1_;
  core::StatusLog& log_;
  platform::EventLoop& loop_;
  bool portSentryActive_ = false;
};

}  // namespace tallowin::portsentry
