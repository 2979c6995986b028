// The whole program on a host in memory, as its targets keep it from one input to the next.
#pragma once

#include <functional>
#include <string>

#include "Check.h"
#include "HostInMemory.h"
#include "console/Console.h"
#include "tallowin/Tallowin.h"

namespace tallowin::fuzz {

/// Keeps what a terminal would show.
class KeptOutput : public platform::Terminal {
 public:
  void ReadLines(std::function<void(std::string)> onLine, std::function<void()> onEnd) override;
  void Write(std::string_view text) override;

  std::function<void(std::string)> line;
  std::function<void()> end;
  std::string output;
};

/// With the terminal's front end. One for each process, on HostInMemory.
class Program {
 public:
  /// `setUp` fills the registry before the program starts.
  explicit Program(const std::function<void(test::FakeHost&)>& setUp);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program();

  /// What was said and shown so far is forgotten.
  void Forget();
  /// Runs as an event.
  void Do(const std::function<void()>& handler) { host.loop.Deliver(handler); }

  [[nodiscard]] test::FakeSockets::Socket& Listener(int port);
  [[nodiscard]] const std::string& Log() { return tallowin.MainForm().Status.Text(); }

  test::FakeHost& host = HostInMemory();
  test::ScriptedQuestions& questions;
  KeptOutput terminal;
  Tallowin tallowin;

 private:
  console::Console console_;
};

}  // namespace tallowin::fuzz
