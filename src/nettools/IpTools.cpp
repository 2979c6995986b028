#include "nettools/IpTools.h"

#include "platform/RunTimeError.h"

namespace tallowin::nettools {

IpTools::IpTools(core::MainForm& mainForm, core::StatusLog& log, IcmpTools& icmp,
                 WhoisClient& whois, platform::EventLoop& loop)
    : mainForm_(mainForm), log_(log), icmp_(icmp), whois_(whois), loop_(loop) {
  mainForm_.Toolbar1.OnButtonClick = [this](const forms::ToolBarButton& button) {
    Toolbar1_ButtonClick(button);
  };
}

void IpTools::Toolbar1_ButtonClick(const forms::ToolBarButton& button) {
  try {
    mainForm_.Toolbar1.SetEnabled(false);
    loop_.DoEvents();
    const bool hasTarget = !Target().empty() && Target() != core::MainForm::kNoAddress;
    if (hasTarget) Run(button.Key);
  } catch (const std::exception& failure) {
    const int number = platform::AsRunTimeError(failure).Number();
    log_.LogStatus("Error " + std::to_string(number) + " occured", false);
  }
  // Also where this one runs in the middle of another, which is still at work then.
  mainForm_.Toolbar1.SetEnabled(true);
}

void IpTools::Run(std::string_view key) {
  if (key == "whois") whois_.Start();
  if (key == "traceroute") Trace();
  if (key == "ping") Ping();
  if (key == "dnslookup") ReverseLookup();
}

void IpTools::ReverseLookup() {
  log_.LogStatus("\r\nResolve DNS Started", true);
  const std::string result = icmp_.LookupHost(Target());
  log_.LogStatus(Target() + " Resolves to " + result, true);
  log_.LogStatus("Resolve DNS Complete", true);
}

void IpTools::Ping() {
  log_.LogStatus("\r\nPing Started", true);
  log_.LogStatus("Pinging Host: " + Target() + " ...", true);
  std::string host = Target();  // a copy, which takes the address of a name
  const std::string result = icmp_.PingHost(host);
  log_.LogStatus("Ping Complete... Milliseconds: " + result, true);
  log_.LogStatus("Ping Completed", true);
}

void IpTools::Trace() {
  log_.LogStatus("\r\nTraceroute Started", true);
  log_.LogStatus("Tracing route to " + Target(), true);
  std::string host = Target();  // a copy, as for a ping
  std::string hops = icmp_.TraceRoute(host);
  log_.LogStatus(hops, true);
  log_.LogStatus("Traceroute Complete", true);
}

}  // namespace tallowin::nettools
