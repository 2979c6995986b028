#include "nettools/WhoisClient.h"

#include "core/ErrorRegimes.h"
#include "nettools/WhoisText.h"

namespace tallowin::nettools {

namespace {

constexpr int kHostNotFound = 11001;

}  // namespace

WhoisClient::WhoisClient(platform::SocketFactory& sockets, core::MainForm& mainForm,
                         const core::TallowinModule& module, core::StatusLog& log, IcmpTools& icmp,
                         std::function<forms::ItemList&()> emaillist, int port)
    : mainForm_(mainForm),
      module_(module),
      log_(log),
      icmp_(icmp),
      emaillist_(std::move(emaillist)),
      port_(port),
      Winsock4_(
          sockets, [this](int index) { return EventsOf(index); },
          static_cast<int>(module.WhoisServers.size()) - 1) {}

platform::SocketEvents WhoisClient::EventsOf(int index) {
  return {
      .ConnectionRequest = {},
      .DataArrival = [this, index](std::int32_t) { Winsock4_DataArrival(index); },
      .Connect = [this, index] { Winsock4_Connect(index); },
      .Close = [this, index] { Winsock4_Close(index); },
      .Error = [this, index](
                   int number,
                   const std::string& description) { Winsock4_Error(index, number, description); },
  };
}

void WhoisClient::Start() {
  mainForm_.LoggedIPs.SetText(icmp_.HostToAddressText(Target()));
  mainForm_.LoggedIPs.SetEnabled(false);
  log_.LogStatus("\r\nWhois Results For " + Target() + " Started\r\n", true);
  WhoisLastIndex_ = static_cast<std::int16_t>(module_.WhoisServers.size() - 1);
  LoadSockets();
  Winsock4_(1).Connect();
}

void WhoisClient::LoadSockets() {
  // The last one first: it is there for the whole time of a run. So a start in the middle of a run
  // fails before it has loaded any socket that the run would never unload.
  for (int index = WhoisLastIndex_; index >= 1; --index) {
    Winsock4_.Load(index);
    Winsock4_(index).SetRemotePort(port_);
    Winsock4_(index).SetRemoteHost(module_.WhoisServers.at(static_cast<std::size_t>(index)));
  }
}

// Servers decide when these run and how they fail, so a statement that fails must never end the
// program.

void WhoisClient::Winsock4_Connect(int index) {
  core::ResumeOnError statement;
  statement([&] { Winsock4_(index).SendData(Target() + "\r\n"); });
}

void WhoisClient::Winsock4_DataArrival(int index) {
  core::ResumeOnError statement;
  std::string text;
  statement([&] { text = ReadableAnswer(Winsock4_(index).GetData()); });
  statement([&] { log_.LogStatus("Whois results...:\r\n" + text, true); });
}

void WhoisClient::Winsock4_Close(int index) { MoveOn(index, true); }

void WhoisClient::Winsock4_Error(int index, int number, const std::string& description) {
  core::ResumeOnError statement;
  statement([&] {
    log_.LogStatus(number == kHostNotFound ? "Error - You are not connected to the internet"
                                           : "Error On Whois Sock " + std::to_string(index) +
                                                 " - " + std::to_string(number) + " " + description,
                   true);
  });
  MoveOn(index, false);
}

void WhoisClient::MoveOn(int index, bool served) {
  core::ResumeOnError statement;
  statement([&] { Winsock4_(index).Close(); });
  if (index + 1 > WhoisLastIndex_) {
    Finish(served);
  } else {
    statement([&] { Winsock4_(index + 1).Connect(); });
  }
  statement([&] { Winsock4_.Unload(index); });
}

void WhoisClient::Finish(bool served) {
  core::ResumeOnError statement;
  if (served) {
    statement([&] { log_.LogStatus("Whois Results For " + Target() + " Completed\r\n", true); });
    statement([&] { ExtractWhoisEmails(mainForm_.Status.Text(), emaillist_()); });
  } else {
    // Whatever the other servers said, the list keeps what the run before has found.
    statement(
        [&] { log_.LogStatus("End Of Whois Results For " + Target() + "\r\n<------>", true); });
  }
  statement([&] { mainForm_.LoggedIPs.SetEnabled(true); });
}

}  // namespace tallowin::nettools
