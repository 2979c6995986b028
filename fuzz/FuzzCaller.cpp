// What a caller of a decoy port says, to be logged, mailed and shown, and what one says in a chat.
#include <algorithm>

#include "Program.h"

namespace {

using tallowin::fuzz::Program;
using tallowin::fuzz::Require;
using tallowin::platform::RegistryValue;

constexpr int kTalkPort = 1111;
constexpr int kChatPort = 2222;

void SetUp(tallowin::test::FakeHost& host) {
  host.ImportPresets(1, 1);
  host.Port(1, "Socket Number") = RegistryValue::Dword(kTalkPort);
  host.Port(1, "Action") = RegistryValue::Text("Accept connection send packet then disconnect");
  host.Port(2, "Socket Number") = RegistryValue::Dword(kChatPort);
  host.Port(2, "Action") = RegistryValue::Text("Let me talk to the hacker");
  host.Setting("Email") = RegistryValue::Text("owner@home.example");
  host.Setting("SMTPServer") = RegistryValue::Text("mail.example");
}

/// The caller talks at once; what he says is there when the text for him has gone out.
void Call(Program& program, int port, const std::string& words) {
  auto& network = program.host.sockets;
  auto& listener = program.Listener(port);
  // The slot's socket of the row Accept is made right behind that of the row Listen.
  auto& caller = **(std::find(network.all.begin(), network.all.end(), &listener) + 1);
  listener.remoteIP = "192.0.2.7";
  caller.localPort = port;
  program.Do([&] { listener.events.ConnectionRequest(1); });
  program.Do([&] { caller.ServerSends(words); });
  program.Do([&] { caller.ServerCloses(); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Program program(SetUp);
  // What is looked up of a caller is asked of others.
  program.tallowin.MainForm().Toolbar1.OnButtonClick = {};
  const std::string words(tallowin::fuzz::TextOf(data, size));
  program.Forget();
  Call(program, kTalkPort, words);
  Require(size > 9000 || program.Log().find("\r\n{" + words + "}") != std::string::npos,
          "the log has it as it came");
  Call(program, kTalkPort, "");
  Require(!program.host.smtp.mails.empty(), "the owner is told");
  for (const auto& mail : program.host.smtp.mails) {
    std::string text = mail.szMessage;
    std::erase(text, '\r');
    Require(tallowin::fuzz::IsPlain(text), "in plain text");
  }

  Call(program, kChatPort, words);
  const std::string& chat = program.tallowin.ChatWindow().ChatBox.Text();
  Require(chat.find("Port 2222: " + words + "\r\n") != std::string::npos, "the chat has it too");
  Require(tallowin::fuzz::IsPlain(program.terminal.output), "the terminal shows plain text");
  Require(
      program.tallowin.MainForm().Status.Text().size() < 4'000'000 && !program.host.loop.Ended(),
      "the guard goes on");
  return 0;
}
