// The four tools that act on one address: whois, trace route, ping, reverse lookup.
#pragma once

#include <string_view>

#include "core/MainForm.h"
#include "core/StatusLog.h"
#include "forms/Controls.h"
#include "nettools/Icmp.h"
#include "nettools/WhoisClient.h"
#include "platform/EventLoop.h"

namespace tallowin::nettools {

/// The handler of MainForm.Toolbar1, for the user's clicks and for alarms alike. The target is the
/// text of LoggedIPs, which each step reads anew: whoever calls in the middle of a tool becomes the
/// target of its later steps.
class IpTools {
 public:
  IpTools(core::MainForm& mainForm, core::StatusLog& log, IcmpTools& icmp, WhoisClient& whois,
          platform::EventLoop& loop);
  IpTools(const IpTools&) = delete;
  IpTools& operator=(const IpTools&) = delete;

  /// Runs the tool of the button with the bar disabled, which keeps the user from it but not an
  /// alarm. All but whois are finished on return. No error leaves it: one is logged, in verbose
  /// mode only. Nothing happens without a target.
  void Toolbar1_ButtonClick(const forms::ToolBarButton& button);

 private:
  void Run(std::string_view key);
  void ReverseLookup();
  void Ping();
  void Trace();
  [[nodiscard]] const std::string& Target() const { return mainForm_.LoggedIPs.Text(); }

  core::MainForm& mainForm_;
  core::StatusLog& log_;
  IcmpTools& icmp_;
  WhoisClient& whois_;
  platform::EventLoop& loop_;
};

}  // namespace tallowin::nettools
