// The whole program on a host in memory.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FakeHost.h"
#include "tallowin/Tallowin.h"

namespace tallowin::test {

struct Program {
  explicit Program(FakeHost& onHost, std::string commandLine = {})
      : host(onHost), tallowin(host.Host(), questions, std::move(commandLine)) {}

  FakeHost& host;
  ScriptedQuestions questions;
  Tallowin tallowin;

  void Start() {
    host.loop.Deliver([this] { tallowin.Start(); });
  }

  /// The log without its stamps, split at the line ends, from line `from` on.
  [[nodiscard]] std::vector<std::string> Log(std::size_t from = 0) {
    std::vector<std::string> lines;
    std::string_view text = tallowin.MainForm().Status.Text();
    while (!text.empty()) {
      std::string_view line = text.substr(0, text.find("\r\n"));
      text.remove_prefix(std::min(text.size(), line.size() + 2));
      if (line.starts_with(kStamp)) line.remove_prefix(std::string_view(kStamp).size());
      lines.emplace_back(line);
    }
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(from));
    return lines;
  }

  void Call(int port, const std::string& address = "192.0.2.7") {
    auto* listener = host.sockets.ListeningOn(port);
    ASSERT_TRUE(listener != nullptr) << "nobody listens on " << port;
    listener->remoteIP = address;
    host.loop.Deliver([&] { listener->events.ConnectionRequest(1); });
  }
};

/// With one program, which a test starts when its registry is as it needs it.
struct ProgramTest : testing::Test {
  FakeHost host;
  std::unique_ptr<Program> program;
  std::size_t start = 0;  ///< how many lines of the log come from the start

  void Up(std::uint32_t portSentry = 0, std::uint32_t verbose = 0) {
    host.ImportPresets(portSentry, verbose);
    Start();
  }
  void Start() {
    program = std::make_unique<Program>(host);
    program->Start();
    start = program->Log().size();
  }
  core::MainForm& Main() { return program->tallowin.MainForm(); }
  core::Options& Options() { return program->tallowin.Options(); }
  /// What has been logged since the start, or since the last call.
  std::vector<std::string> NewLines() {
    auto lines = program->Log(start);
    start += lines.size();
    return lines;
  }
};

}  // namespace tallowin::test
