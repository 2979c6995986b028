// What happens from the moment that a caller reaches a decoy port until the port is ready again.
#pragma once

#include <cstdint>
#include <string>

#include "core/ErrorRegimes.h"
#include "core/MainForm.h"
#include "core/SettingsStore.h"
#include "core/StatusLog.h"
#include "platform/EventLoop.h"
#include "portsentry/AlarmResponses.h"
#include "portsentry/IntruderChat.h"
#include "portsentry/PortListeners.h"

namespace tallowin::portsentry {

/// The handlers of the sockets of both rows; the index is the slot. Each status line and each
/// DoEvents lets further callers in, nested inside the handler that is under way, as deep as the
/// event loop lets passes nest; nothing limits how often anybody may call.
class ConnectionHandling {
 public:
  ConnectionHandling(PortSockets& sockets, core::SettingsStore& settings, core::MainForm& mainForm,
                     core::StatusLog& log, IntruderChat& chat, AlarmResponses& alarms,
                     platform::EventLoop& loop)
      : sockets_(sockets),
        settings_(settings),
        mainForm_(mainForm),
        log_(log),
        chat_(chat),
        alarms_(alarms),
        loop_(loop) {}

  void Listen_ConnectionRequest(int index, std::int32_t requestID);
  void Listen_Error(int index, int number, const std::string& description);
  void Accept_DataArrival(int index);
  void Accept_Close(int index);
  void Accept_Error(int index, int number, const std::string& description);

  [[nodiscard]] const std::string& LastCallerIP() const { return lastCallerIP_; }
  [[nodiscard]] std::int16_t LastCallerPort() const { return lastCallerPort_; }

 private:
  using Statements = core::ResumeOnError;
  void RecordCaller(int index, Statements& statement);
  void TreatCaller(int index, std::int32_t requestID, Statements& statement);
  void Refuse(int index, Statements& statement);
  void SendAndClose(int index, std::int32_t requestID, Statements& statement);
  void StartChat(int index, std::int32_t requestID, Statements& statement);
  void Say(Statements& statement, const char* line);

  PortSockets& sockets_;
  core::SettingsStore& settings_;
  core::MainForm& mainForm_;
  core::StatusLog& log_;
  IntruderChat& chat_;
  AlarmResponses& alarms_;
  platform::EventLoop& loop_;
  std::string lastCallerIP_;
  std::int16_t lastCallerPort_ = 0;
};

}  // namespace tallowin::portsentry
