// The service that says who the user is: callers come and go, and what they ask comes back.
// A line of the input is one thing that a caller does.
#include "Program.h"

namespace {

using tallowin::fuzz::Program;
using tallowin::fuzz::Require;
using tallowin::platform::RegistryValue;
using tallowin::platform::SocketState;

void SetUp(tallowin::test::FakeHost& host) {
  host.ImportPresets(0, 1);
  host.Setting("IdentD") = RegistryValue::Dword(1);
}

void Ask(tallowin::test::FakeSockets::Socket& socket, std::string query, bool isFirst) {
  socket.sent.clear();
  const bool connected = socket.state == SocketState::Connected;
  socket.ServerSends(query);
  const bool answers = connected && isFirst;
  Require(socket.sent == (answers ? query.append(" : USERID: UNIX: Anonymous") : ""),
          "what a caller asks first is answered, and nothing else");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Program program(SetUp);
  static auto& socket = program.Listener(tallowin::nettools::IdentDServer::kPort);
  program.Forget();
  std::string_view text = tallowin::fuzz::TextOf(data, size);
  while (!text.empty()) {
    const std::string line(tallowin::fuzz::TakeLine(text));
    if (line == "fail") {
      program.Do([&] { socket.ServerFails(10054, "Connection reset by peer"); });
    } else {
      program.Do([&] { socket.events.ConnectionRequest(1); });
      if (line == "close") program.Do([&] { socket.ServerCloses(); });
      program.Do([&] { Ask(socket, line, true); });
    }
    Require(socket.state == SocketState::Listening, "it waits for the next caller");
    program.Do([&] { Ask(socket, "late", false); });
  }
  program.Do([&] { socket.ServerFails(10054, "Connection reset by peer"); });
  Require(tallowin::fuzz::IsPlain(program.terminal.output), "the terminal shows plain text");
  return 0;
}
