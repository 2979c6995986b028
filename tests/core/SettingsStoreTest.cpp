#include "core/SettingsStore.h"

#include <gtest/gtest.h>

#include "support/ErrorOf.h"
#include "support/FakeHost.h"

namespace tallowin::core {
namespace {

using platform::RegistryValue;
using test::ErrorOf;

struct SettingsStoreTest : testing::Test {
  test::FakeHost host;
  MainForm mainForm;
  Options options;
  SettingsStore store{host.registry, mainForm, options};
};

TEST_F(SettingsStoreTest, WithoutKeysNothingIsLoadedAndNothingIsMade) {
  EXPECT_EQ(ErrorOf([&] { store.LoadPortSettings(); }), 13);
  EXPECT_EQ(ErrorOf([&] { store.LoadSettings(); }), 13);
  EXPECT_EQ(options.VerboseChk.Value(), forms::CheckBox::Greyed);
  EXPECT_EQ(options.IdentDTxt.Text(), "Anonymous");
  EXPECT_EQ(store.ReadPortText(1, "Action"), "Error: Opening Registry Key!");

  store.SaveSettings();
  store.SavePortSettings();
  EXPECT_TRUE(host.registry.keys.empty());
}

TEST_F(SettingsStoreTest, ANumberThatCannotBeReadEndsTheLoadRightThere) {
  host.ImportPresets(1, 0);
  for (int slot = 1; slot <= 15; ++slot) {
    host.Port(slot, "Socket Number") = RegistryValue::Dword(1000U + static_cast<unsigned>(slot));
    host.Port(slot, "Port Description") = RegistryValue::Text("new");
  }
  host.Port(3, "Socket Number") = RegistryValue::Dword(70000);
  store.PortSettings(3).PortDescription = "old";
  EXPECT_EQ(ErrorOf([&] { store.LoadPortSettings(); }), 6);
  EXPECT_EQ(store.PortSettings(2).SocketNumber, 1002);
  EXPECT_EQ(store.PortSettings(3).SocketNumber, 0);
  EXPECT_EQ(store.PortSettings(3).PortDescription, "old");
  EXPECT_EQ(store.PortSettings(4), PortSetting{});

  // In the middle of a slot as well: what stands before the fault is new, the rest is not.
  host.Port(3, "Socket Number") = RegistryValue::Text(" 1003 ");
  host.Port(3, "Visual Warning") = RegistryValue::Text("yes");
  EXPECT_EQ(ErrorOf([&] { store.LoadPortSettings(); }), 13);
  EXPECT_EQ(store.PortSettings(3).SocketNumber, 1003) << "a text that is a number is one";
  EXPECT_EQ(store.PortSettings(3).PortDescription, "new");
  EXPECT_EQ(store.PortSettings(4), PortSetting{});
}

TEST_F(SettingsStoreTest, AMissingTextBecomesTheErrorTextAndIsStoredAsSuch) {
  host.ImportPresets(1, 0);
  auto& settings = host.registry.keys["software\\marrowind software\\tallowin\\settings"];
  std::erase_if(settings, [](const auto& entry) { return entry.first == "Email"; });
  store.LoadSettings();
  EXPECT_EQ(options.EmailTxt.Text(), "Error: Querying Value!");
  store.SaveSettings();
  EXPECT_EQ(host.Setting("Email"), RegistryValue::Text("Error: Querying Value!"));
}

TEST_F(SettingsStoreTest, EachBoxRunsItsHandlerOnceInOrderForZeroAsForOne) {
  host.ImportPresets(1, 1);
  std::string order;
  auto note = [&](forms::CheckBox& box, char letter) {
    box.OnClick = [&order, &box, letter] { order += {letter, char('0' + box.Value())}; };
  };
  note(options.VerboseChk, 'v');
  note(options.PortChk, 'p');
  note(options.ActiveMonChk, 't');
  note(options.OnTopChk, 'o');
  note(options.SyncTimeChk, 's');
  note(options.IdentDChk, 'i');
  store.LoadSettings();
  EXPECT_EQ(order, "v1p1t0o0s0i0");

  order.clear();
  host.Setting("Always On Top") = RegistryValue::Dword(1);
  store.LoadSettings();
  EXPECT_EQ(order, "o1") << "only what differs";
  EXPECT_TRUE(mainForm.TopMost());
  host.Setting("Always On Top") = RegistryValue::Dword(0);
  store.LoadSettings();
  EXPECT_TRUE(mainForm.TopMost()) << "the load alone does not take it away";
}

TEST_F(SettingsStoreTest, TheTableIsWrittenWholeAndBackedUpByValue) {
  host.ImportPresets(1, 0);
  const PortSetting full{.SocketNumber = 32767,
                         .PortDescription = "d",
                         .PacketToSend = "line\r\nline",
                         .Action = action::kChat,
                         .SoundSiren = 1,
                         .VisualWarning = 2,
                         .WhoisHacker = 3,
                         .TraceRouteHacker = 4,
                         .ShutDown = 5,
                         .HangUpModem = -6};
  store.PortSettings(15) = full;
  store.BackupPortSettings(true);
  store.SavePortSettings();
  store.PortSettings(15) = PortSetting{};
  store.LoadPortSettings();
  EXPECT_EQ(store.PortSettings(15), full);
  store.PortSettings(15) = PortSetting{};
  store.BackupPortSettings(false);
  EXPECT_EQ(store.PortSettings(15), full);
  EXPECT_EQ(ErrorOf([&] { store.PortSettings(16); }), 9);
  EXPECT_EQ(ErrorOf([&] { store.PortSettings(-1); }), 9);
}

TEST_F(SettingsStoreTest, WhatANumberIs) {
  const std::vector<std::pair<Variant, int>> numbers = {
      {{}, 0},       {"-5", -5},   {"+7", 7},      {"2.5", 2},     {"3.5", 4},
      {"1e3", 1000}, {"&H10", 16}, {"&hFFFF", -1}, {32767, 32767}, {" 8 ", 8},
  };
  for (const auto& [value, expected] : numbers) EXPECT_EQ(ToInteger(value), expected);
  for (const char* text :
       {"", " ", "x", "1x", "1 2", "&H", "&HG", "inf", "nan", "--1", "+-5", "0x10"}) {
    EXPECT_EQ(ErrorOf([&] { (void)ToInteger(text); }), 13) << text;
  }
  for (const Variant& value :
       {Variant(32768), Variant(-32769), Variant("1e400"), Variant("&H8000000")}) {
    EXPECT_EQ(ErrorOf([&] { (void)ToInteger(value); }), 6) << ToText(value);
  }
}

}  // namespace
}  // namespace tallowin::core
