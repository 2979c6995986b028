// Asks the address registries who runs a caller's network.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/MainForm.h"
#include "core/SocketArray.h"
#include "core/StatusLog.h"
#include "core/TallowinModule.h"
#include "forms/Controls.h"
#include "nettools/Icmp.h"
#include "platform/Winsock.h"

namespace tallowin::nettools {

/// Asks all servers of TallowinModule, one after the other, whatever became of the one before. The
/// answers go into the log as they come in, and the mail addresses of the log into the list that
/// `emaillist` gives when the last server has closed. What is asked about is the text of
/// MainForm.LoggedIPs at the moment of asking: a caller who comes in meanwhile is who the later
/// servers are asked about.
class WhoisClient {
 public:
  WhoisClient(platform::SocketFactory& sockets, core::MainForm& mainForm,
              const core::TallowinModule& module, core::StatusLog& log, IcmpTools& icmp,
              std::function<forms::ItemList&()> emaillist, int port);
  WhoisClient(const WhoisClient&) = delete;
  WhoisClient& operator=(const WhoisClient&) = delete;

  /// Starts a run, which goes on by socket events, and disables LoggedIPs until its end; a name
  /// there becomes its address first. Throws 360 if a run is under way, which then continues, or
  /// what Winsock::Connect throws; LoggedIPs is disabled then all the same, and every later start
  /// throws 360, because the sockets of the run that did not come about are still there. A server
  /// that neither answers nor closes holds the run up for ever.
  void Start();

 private:
  [[nodiscard]] platform::SocketEvents EventsOf(int index);
  void LoadSockets();
  void Winsock4_Connect(int index);
  void Winsock4_DataArrival(int index);
  void Winsock4_Close(int index);
  void Winsock4_Error(int index, int number, const std::string& description);
  /// Ends with this server, and asks the next one if there is one.
  void MoveOn(int index, bool served);
  /// `served` tells what became of the last server.
  void Finish(bool served);
  [[nodiscard]] const std::string& Target() const { return mainForm_.LoggedIPs.Text(); }

  core::MainForm& mainForm_;
  const core::TallowinModule& module_;
  core::StatusLog& log_;
  IcmpTools& icmp_;
  std::function<forms::ItemList&()> emaillist_;
  int port_;
  std::int16_t WhoisLastIndex_ = 0;
  core::SocketArray Winsock4_;
};

}  // namespace tallowin::nettools
