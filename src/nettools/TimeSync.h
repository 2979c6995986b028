// Keeps the machine's clock right by asking a time server.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/MainForm.h"
#include "core/Options.h"
#include "core/StatusLog.h"
#include "platform/EventLoop.h"
#include "platform/RegionalSettings.h"
#include "platform/SystemClock.h"
#include "platform/UdpWinsock.h"
#include "platform/Winsock.h"

namespace tallowin::nettools {

/// Asks the daytime service (RFC 867) over UDP every 15 minutes, or when the user says so. Nothing
/// waits for an answer: one that is lost costs 15 minutes, and one that comes at any time is taken.
class TimeSync {
 public:
  struct Host {
    platform::SocketFactory& sockets;
    platform::RegionalSettings& regional;
    platform::SystemClock& clock;
    platform::EventLoop& loop;
  };
  TimeSync(Host host, core::MainForm& mainForm, core::Options& options, core::StatusLog& log,
           const std::string& timeServer, int port);
  TimeSync(const TimeSync&) = delete;
  TimeSync& operator=(const TimeSync&) = delete;

  /// The handler of Options.SyncTimeChk.
  void SyncTimeChk_Click();
  /// Asks now, whether or not the server is asked every 15 minutes.
  void synctimenowmnu_Click();

 private:
  void TimeSyncTimer_Timer();
  void RequestTime();
  void TimeWinsock_DataArrival();
  void AdjustClock(std::string reply);
  void LogError(const platform::RunTimeError& error);

  Host host_;
  core::MainForm& mainForm_;
  core::Options& options_;
  core::StatusLog& log_;
  std::unique_ptr<platform::UdpWinsock> TimeWinsock_;
  /// Since the last request. Goes on where it stood when the service is switched on again.
  std::int16_t TimeSyncMinutes_ = 0;
  std::unique_ptr<platform::Timer> TimeSyncTimer_;
};

}  // namespace tallowin::nettools
