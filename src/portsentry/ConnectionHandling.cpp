#include "portsentry/ConnectionHandling.h"

namespace tallowin::portsentry {

namespace action = core::action;

void ConnectionHandling::Listen_ConnectionRequest(int index, std::int32_t requestID) {
  Statements statement;
  RecordCaller(index, statement);
  TreatCaller(index, requestID, statement);
  statement([&] { loop_.DoEvents(); });
  statement([&] { alarms_.RunAlarmResponses(index); });
  statement([&] { log_.LogStatus("----Connected Attempt Ended----", true, true); });
}

void ConnectionHandling::RecordCaller(int index, Statements& statement) {
  // An address that has called before is treated like any other: nobody is filtered or slowed.
  statement([&] { mainForm_.LoggedIPs.AddItem(sockets_.Listen(index).RemoteHostIP()); });
  statement([&] { mainForm_.LoggedIPs.SetText(sockets_.Listen(index).RemoteHostIP()); });
  statement([&] { lastCallerIP_ = sockets_.Listen(index).RemoteHostIP(); });
  statement(
      [&] { lastCallerPort_ = static_cast<std::int16_t>(sockets_.Listen(index).LocalPort()); });

  Say(statement, "\r\n----Connected Attempt Started----");
  statement([&] {
    const int port = sockets_.Listen(index).LocalPort();
    log_.LogStatus("Connection Attempted On Port " + std::to_string(port), true);
  });
  statement([&] {
    // From the registry and not from the table: the texts follow the last OK of the options, the
    // action below follows what the user is choosing there right now.
    const std::string description = settings_.ReadPortText(index, "Port Description");
    log_.LogStatus("Description Of This Port: " + description, true);
  });
  statement([&] {
    log_.LogStatus("Malicious Users IP: " + sockets_.Listen(index).RemoteHostIP(), true);
  });
}

void ConnectionHandling::TreatCaller(int index, std::int32_t requestID, Statements& statement) {
  // A copy: an event inside the branch may change the table.
  const std::string chosen = settings_.PortSettings(index).Action;
  if (chosen == action::kRefuse) {
    Refuse(index, statement);
  } else if (chosen == action::kSend) {
    SendAndClose(index, requestID, statement);
  } else if (chosen == action::kChat) {
    StartChat(index, requestID, statement);
  }
}

void ConnectionHandling::Refuse(int index, Statements& statement) {
  Say(statement, "Refusing Connection...");
  statement([&] { sockets_.Listen(index).Close(); });  // this is what turns the caller away
  statement([&] { loop_.DoEvents(); });
  statement([&] { sockets_.Listen(index).Listen(); });
  statement([&] { loop_.DoEvents(); });
  Say(statement, "Done");
  Say(statement, "Re-Initialising Socket");
  Say(statement, "Done");
}

void ConnectionHandling::SendAndClose(int index, std::int32_t requestID, Statements& statement) {
  statement([&] { sockets_.Accept(index).Accept(requestID); });
  Say(statement, "Connnection Accepted...");
  Say(statement, "Sending Specified Message...");
  statement(
      [&] { sockets_.Accept(index).SendData(settings_.ReadPortText(index, "Packet To Send")); });
  statement([&] { loop_.DoEvents(); });
  Say(statement, "Done");
  Say(statement, "Closing Connection And Re-Initialising Socket");
  statement([&] { sockets_.Accept(index).Close(); });
}

void ConnectionHandling::StartChat(int index, std::int32_t requestID, Statements& statement) {
  statement([&] { sockets_.Accept(index).Accept(requestID); });
  statement([&] { chat_.Show(); });
  statement([&] {
    const int port = sockets_.Accept(index).LocalPort();
    log_.LogStatus("Chat Initialised With Port " + std::to_string(port), true);
  });
}

void ConnectionHandling::Say(Statements& statement, const char* line) {
  statement([&] { log_.LogStatus(line, true); });
}

void ConnectionHandling::Listen_Error(int index, int number, const std::string& description) {
  const int port = sockets_.Listen(index).LocalPort();
  log_.LogStatus("Winsock Listen Error On Port " + std::to_string(port) + ":" +
                     std::to_string(number) + ":" + description,
                 false);
}

void ConnectionHandling::Accept_DataArrival(int index) {
  const std::string data = sockets_.Accept(index).GetData();
  const int port = sockets_.Accept(index).LocalPort();
  if (settings_.PortSettings(index).Action == action::kChat) {
    chat_.Incoming(port, data);
    return;
  }
  log_.LogStatus(
      "Incoming Text From Malicious User On Port " + std::to_string(port) + "\r\n{" + data + "}",
      true);
}

void ConnectionHandling::Accept_Close(int index) {
  Statements statement;
  statement([&] { sockets_.Accept(index).Close(); });
  statement([&] {
    if (settings_.PortSettings(index).Action == action::kChat) chat_.CallerHasGone(statement);
  });
}

void ConnectionHandling::Accept_Error(int index, int number, const std::string& description) {
  const int port = sockets_.Accept(index).LocalPort();
  log_.LogStatus("Winsock Accept Error On Port " + std::to_string(port) + ":" +
                     std::to_string(number) + ":" + description,
                 false);
}

}  // namespace tallowin::portsentry
