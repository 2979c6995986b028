// The running watch on a host in memory: what a test changes there, the next tick sees.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FakeHost.h"
#include "trojansentry/TrojanMon.h"

namespace tallowin::trojansentry {

inline const std::string kRun = R"(software\microsoft\windows\currentversion\run)";
inline const std::string kMachineRun = "machine:" + kRun;
inline const std::string kMachineServices = kMachineRun + "services";

struct TrojanSentryTest : testing::Test {
  test::FakeHost host;
  core::MainForm mainForm;
  core::Options options;
  core::TallowinModule module{host.paths, host.system};
  core::StatusLog log{mainForm, options, module, host.loop, host.regional};
  test::ScriptedQuestions questions;
  int sounds = 0;
  std::vector<std::string> hunted;
  std::function<void(std::string&)> hunt = [](std::string& file) { file.clear(); };
  TrojanMon watch{{host.registry, host.iniFiles, host.paths, host.loop},
                  module,
                  log,
                  questions,
                  {.PlayTrojanDetected = [this] { ++sounds; },
                   .HuntOffendingProcess =
                       [this](std::string& file) {
                         hunted.push_back(file);
                         hunt(file);
                       }}};

  TrojanSentryTest() { module.SetIniPaths(); }

  void Add(const std::string& place, const std::string& name, const std::string& data = "x") {
    host.registry.keys[place].emplace_back(name, platform::RegistryValue::Text(data));
  }
  [[nodiscard]] std::string& Ini(const std::string& place) { return host.iniFiles.values[place]; }
  void Tick() { host.loop.Tick(std::chrono::milliseconds(300)); }
  [[nodiscard]] bool Runs() const { return host.loop.Ticks(std::chrono::milliseconds(300)); }
  std::string TakeLog() {
    std::string text = mainForm.Status.Text();
    mainForm.Status.SetText("");
    for (std::size_t at; (at = text.find(test::kStamp)) != std::string::npos;) {
      text.erase(at, std::string_view(test::kStamp).size());
    }
    return text;
  }
};

}  // namespace tallowin::trojansentry
