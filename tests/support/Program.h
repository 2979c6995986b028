// The whole program on a host in memory.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FakeHost.h"
#include "tallowin/Tallowin.h"

namespace tallowin::test {

struct Program {
  explicit Program(FakeHost& onHost, std::string commandLine = {},
                   const core::Endpoints& endpoints = {})
      : Program(onHost, onHost.Host(), std::move(commandLine), endpoints) {}
  /// With parts of another host in place of the fakes.
  Program(FakeHost& onHost, const platform::Host& mixed, std::string commandLine,
          const core::Endpoints& endpoints)
      : host(onHost), tallowin(mixed, questions, std::move(commandLine), endpoints) {}

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

  /// A caller reaches the listener of `port`, as an event.
  void Call(int port, const std::string& address = "192.0.2.7") {
    auto* listener = host.sockets.ListeningOn(port);
    ASSERT_TRUE(listener != nullptr) << "nobody listens on " << port;
    listener->remoteIP = address;
    host.loop.Deliver([&] { listener->events.ConnectionRequest(1); });
  }
};

}  // namespace tallowin::test
