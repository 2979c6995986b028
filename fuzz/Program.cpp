#include "Program.h"

#include <cstdlib>

namespace tallowin::fuzz {

namespace {

test::ScriptedQuestions& NobodyToAsk() {
  static test::ScriptedQuestions questions;
  return questions;
}

}  // namespace

void KeptOutput::ReadLines(std::function<void(std::string)> onLine, std::function<void()> onEnd) {
  line = std::move(onLine);
  end = std::move(onEnd);
}

void KeptOutput::Write(std::string_view text) { output += text; }

Program::Program(const std::function<void(test::FakeHost&)>& setUp)
    : questions(NobodyToAsk()),
      tallowin((setUp(host), host.Host()), questions, {}),
      console_(terminal, host.loop) {
  console_.Attach(tallowin.Forms(), tallowin.MainForm().Status, [] {});
  Do([this] { tallowin.Start(); });
}

Program::~Program() = default;

void Program::Forget() {
  tallowin.MainForm().Status.SetText("");
  tallowin.MainForm().LoggedIPs.Clear();
  tallowin.ChatWindow().ChatBox.SetText("");
  terminal.output.clear();
  questions.asked.clear();
  host.smtp.calls.clear();
  host.smtp.mails.clear();
  host.sound.played.clear();
}

test::FakeSockets::Socket& Program::Listener(int port) {
  if (auto* socket = host.sockets.ListeningOn(port)) return *socket;
  Require(false, "the port is open");
  std::abort();
}

}  // namespace tallowin::fuzz
