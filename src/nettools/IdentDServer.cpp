#include "nettools/IdentDServer.h"

#include <utility>

#include "core/ErrorRegimes.h"

namespace tallowin::nettools {

IdentDServer::IdentDServer(platform::SocketFactory& sockets, core::MainForm& mainForm,
                           core::Options& options, core::StatusLog& log, platform::EventLoop& loop,
                           int port)
    : mainForm_(mainForm),
      options_(options),
      log_(log),
      loop_(loop),
      IdentDSck_(sockets.MakeWinsock()) {
  IdentDSck_->SetLocalPort(port);
  IdentDSck_->SetEvents({
      .ConnectionRequest = [this](std::int32_t requestID) { ConnectionRequest(requestID); },
      .DataArrival = [this](std::int32_t) { DataArrival(); },
      // A close has no handler: a client that goes away without asking leaves the service waiting
      // for nobody, until the user switches it off and on.
      .Error = [this](int, const std::string&) { Reopen(); },
  });
}

void IdentDServer::IdentDChk_Click() {
  ++exchange_;
  const bool on = options_.IdentDChk.Value() == forms::CheckBox::Checked;
  core::ResumeOnError statement;
  statement([&] { IdentDSck_->Close(); });
  if (on) statement([&] { IdentDSck_->Listen(); });
  statement(
      [&] { log_.LogStatus(on ? "IdentD Server Activated" : "IdentD Server Deactivated", true); });
  statement([&] { mainForm_.identmnu.SetChecked(on); });
}

// Strangers decide when these run and what becomes of the connection in between, so a statement
// that fails must never end the program.

void IdentDServer::ConnectionRequest(std::int32_t requestID) {
  ++exchange_;
  core::ResumeOnError statement;
  statement([&] { IdentDSck_->Close(); });
  if (!statement([&] { IdentDSck_->Accept(requestID); })) Reopen();
}

void IdentDServer::DataArrival() {
  core::ResumeOnError statement;
  const std::string query = IdentDSck_->GetData();
  const auto exchange = exchange_;
  if (std::exchange(answered_, exchange) == exchange) return;  // only what came first is answered
  statement([&] { loop_.DoEvents(); });
  // Meanwhile the user may have switched the service, and off must stay off; or the caller has
  // gone, and the socket serves the next one, who must not get this reply.
  const auto goesOn = [&] { return exchange == exchange_; };
  if (goesOn()) {
    statement(
        [&] { IdentDSck_->SendData(query + " : USERID: UNIX: " + options_.IdentDTxt.Text()); });
    statement([&] { loop_.DoEvents(); });
  }
  if (goesOn()) Reopen();
}

void IdentDServer::Reopen() {
  ++exchange_;
  core::ResumeOnError statement;
  statement([&] { IdentDSck_->Close(); });
  statement([&] { IdentDSck_->Listen(); });
}

}  // namespace tallowin::nettools
