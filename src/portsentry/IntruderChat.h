// The conversation with callers on chat ports.
#pragma once

#include <string>
#include <string_view>

#include "core/ErrorRegimes.h"
#include "core/SettingsStore.h"
#include "platform/EventLoop.h"
#include "portsentry/ChatWindow.h"
#include "portsentry/PortListeners.h"

namespace tallowin::portsentry {

/// There is no list of chats: a chat is a connected element of Accept whose slot has the chat
/// action, found by looking at all fifteen. No line of a chat reaches the status log.
class IntruderChat {
 public:
  IntruderChat(ChatWindow& window, PortSockets& sockets, core::SettingsStore& settings,
               platform::EventLoop& loop);

  void Show() { window_.Show(); }

  /// What came in from the caller on `port`, one unit as it came.
  void Incoming(int port, std::string_view data);

  /// Hides the window if no chat is left. `statement` are the statements of the close event.
  void CallerHasGone(core::ResumeOnError& statement);

 private:
  void Send();
  void EndAll();
  /// Throws RunTimeError 340 where the slot has no socket.
  [[nodiscard]] bool IsChatting(int slot) const;

  ChatWindow& window_;
  PortSockets& sockets_;
  core::SettingsStore& settings_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::portsentry
