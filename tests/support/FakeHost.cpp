#include "support/FakeHost.h"

namespace tallowin::test {

namespace {

using platform::RegistryValue;
constexpr const char* kRoot = "software\\marrowind software\\tallowin\\";

RegistryValue& ValueIn(FakeRegistry::Values& values, const std::string& name) {
  if (auto* found = FakeRegistry::Find(values, name)) return *found;
  return values.emplace_back(name, RegistryValue{}).second;
}

}  // namespace

RegistryValue& FakeHost::Setting(const std::string& name) {
  return ValueIn(registry.keys[std::string(kRoot) + "settings"], name);
}

RegistryValue& FakeHost::Port(int slot, const std::string& name) {
  return ValueIn(registry.keys[kRoot + ("ports\\setting " + std::to_string(slot))], name);
}

void FakeHost::SetSlot(int slot, int port, const char* action, const char* packet) {
  Port(slot, "Socket Number") = RegistryValue::Dword(static_cast<std::uint32_t>(port));
  Port(slot, "Action") = RegistryValue::Text(action);
  Port(slot, "Packet To Send") = RegistryValue::Text(packet);
}

void FakeHost::ImportPresets(std::uint32_t portSentry, std::uint32_t verbose) {
  Setting("Verbose Mode") = RegistryValue::Dword(verbose);
  Setting("Port Sentry") = RegistryValue::Dword(portSentry);
  for (const char* name : {"Trojan Sentry", "Always On Top", "TimeSync", "IdentD"}) {
    Setting(name) = RegistryValue::Dword(0);
  }
  for (const char* name : {"Email", "SMTPServer", "ICQ"}) Setting(name) = RegistryValue::Text("");
  Setting("IdentDReply") = RegistryValue::Text("Anonymous");
  for (int slot = 1; slot <= 15; ++slot) {
    for (const char* name : {"Socket Number", "Sound Siren", "Visual Warning", "Whois Hacker",
                             "Trace Route Hacker", "ShutDown", "Hang Up Modem"}) {
      Port(slot, name) = RegistryValue::Dword(0);
    }
    for (const char* name : {"Port Description", "Packet To Send", "Action"}) {
      Port(slot, name) = RegistryValue::Text("");
    }
  }
}

}  // namespace tallowin::test
