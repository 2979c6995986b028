#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "core/LineRoutines.h"
#include "core/SettingsStore.h"
#include "core/StatusLog.h"
#include "support/ErrorOf.h"
#include "support/FakeHost.h"

namespace tallowin::core {
namespace {

namespace fs = std::filesystem;
using platform::RegistryValue;
using test::ErrorOf;
using testing::EndsWith;
using testing::HasSubstr;

struct SettingsStoreTest : testing::Test {
  test::FakeHost host;
  MainForm mainForm;
  Options options;
  SettingsStore store{host.registry, mainForm, options};
};

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

  host.Port(3, "Socket Number") = RegistryValue::Text(" 1003 ");
  host.Port(3, "Visual Warning") = RegistryValue::Text("yes");
  EXPECT_EQ(ErrorOf([&] { store.LoadPortSettings(); }), 13);
  EXPECT_EQ(store.PortSettings(3).SocketNumber, 1003) << "a text that is a number is one";
  EXPECT_EQ(store.PortSettings(3).PortDescription, "new");
  EXPECT_EQ(store.PortSettings(4), PortSetting{});
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
      {{}, 0},       {"-5", -5},   {"+7", 7},          {"2.5", 2},     {"3.5", 4},
      {"1e3", 1000}, {"&H10", 16}, {"&hFFFF", -1},     {32767, 32767}, {" 8 ", 8},
      {"5-", -5},    {"(6)", -6},  {"-$1,000", -1000}, {"1d2", 100},   {"&17", 15},
      {"\t.5", 0},   {"3.", 3},    {"$ +4", 4},        {"1e-999", 0},
  };
  for (const auto& [value, expected] : numbers) EXPECT_EQ(ToInteger(value), expected);
  for (const char* text :
       {"",  " ", "x",  "1x",   "1 2", "&H",  "&HG", "inf", "nan", "--1", "+-5",  "0x10",
        "-", ".", "1e", "(-5)", "(5",  "-5-", ",1",  "$$1", "&",   "&8",  "1.2.3"}) {
    EXPECT_EQ(ErrorOf([&] { (void)ToInteger(text); }), 13) << text;
  }
  for (const Variant& value :
       {Variant(32768), Variant(-32769), Variant("1e400"), Variant("&H8000000")}) {
    EXPECT_EQ(ErrorOf([&] { (void)ToInteger(value); }), 6) << ToText(value);
  }
}

struct StatusLogTest : testing::Test {
  test::FakeHost host;
  MainForm mainForm;
  Options options;
  TallowinModule module{host.paths, host.system};
  StatusLog log{mainForm, options, module, host.loop, host.regional};
  const std::string stamp = test::kStamp;

  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& file : fs::directory_iterator(host.folder.Path() + "/Logs")) {
      names.push_back(file.path().filename());
    }
    return names;
  }
  std::string File() const {
    return test::ReadFile(host.folder.Path() + "/Logs/Log 9_16_2000 9_41_07 PM.log");
  }
};

TEST_F(StatusLogTest, LinesAreStampedAndShownByLevel) {
  std::string message = "for everybody";
  log.LogStatus(message, true);
  EXPECT_EQ(message, stamp + "for everybody");
  for (const int verbose : {0, 1, 2}) {
    options.VerboseChk.SetValue(verbose);
    log.LogStatus("detail " + std::to_string(verbose), false);
  }
  EXPECT_EQ(mainForm.Status.Text(), stamp + "for everybody\r\n" + stamp + "detail 1\r\n");
  EXPECT_EQ(mainForm.Status.SelStart(), mainForm.Status.Text().size());
}

TEST_F(StatusLogTest, EachLineLetsEventsRunNested) {
  host.loop.pending.push_back([&] { log.LogStatus("nested", true); });
  log.LogStatus("outer", true);
  log.LogStatus("last", true);
  EXPECT_EQ(mainForm.Status.Text(),
            stamp + "outer\r\n" + stamp + "nested\r\n" + stamp + "last\r\n");
}

TEST_F(StatusLogTest, ANotificationNeedsBothSettingsAndNotTheLine) {
  int mails = 0;
  log.OnNotify = [&] { ++mails; };
  options.SMTPTxt.SetText("mail.example");
  log.LogStatus("no address", true, true);
  options.EmailTxt.SetText("owner@example");
  log.LogStatus("not asked for", true);
  EXPECT_EQ(mails, 0);
  log.LogStatus("not shown, mailed all the same", false, true);
  EXPECT_EQ(mails, 1);
  options.SMTPTxt.SetText("");
  log.LogStatus("no server", true, true);
  EXPECT_EQ(mails, 1);
}

TEST_F(StatusLogTest, OnlyTheLengthOfTheNewLineRotates) {
  const auto message = [&](std::size_t length) { return std::string(length - stamp.size(), 'x'); };
  log.LogStatus("first", true);
  log.LogStatus(message(9999), true);
  log.LogStatus(message(9999), true);
  EXPECT_FALSE(fs::exists(host.folder.Path() + "/Logs"));

  log.LogStatus(message(10000), true);
  EXPECT_EQ(mainForm.Status.Text(), stamp + "Status Continued From Last Log\r\n" + stamp +
                                        "---\r\n" + stamp + message(10000) + "\r\n");
  EXPECT_THAT(File(), HasSubstr("\r\n" + stamp + "first\r\n"));
  EXPECT_THAT(File(), EndsWith("End Of Log... Continued In Next File\r\n\r\n"));

  // Longer still, the line gets a file of its own, and the pause keeps the rotation's from taking
  // its name.
  std::chrono::milliseconds slept{0};
  host.loop.whileAsleep = [&](std::chrono::milliseconds time) {
    slept += time;
    EXPECT_THAT(File(), EndsWith("\r\n" + stamp + message(10001) + "\r\n"));
    host.regional.time = "9:41:09 PM";
  };
  log.LogStatus(message(10001), true);
  EXPECT_EQ(slept.count(), 1500);
  EXPECT_EQ(Files().size(), 2U);
  EXPECT_EQ(CountLines(mainForm.Status.Text()), 3U) << "two lines, and behind the last line end";
  EXPECT_THAT(mainForm.Status.Text(), Not(HasSubstr("xxx")));
}

TEST_F(StatusLogTest, AFolderThatCannotBeMadeIsPassedOver) {
  std::ofstream(host.folder.Path() + "/Logs") << "in the way";
  log.WriteLogFile("text");
  EXPECT_THAT(mainForm.Status.Text(), HasSubstr("Wrote Log To File: "));
  log.RemoveLogFiles();
  EXPECT_EQ(test::ReadFile(host.folder.Path() + "/Logs"), "in the way");
}

TEST(LineRoutines, CountAndGet) {
  EXPECT_EQ(CountLines("a\r\nb\r\n"), 3U);
  EXPECT_EQ(CountLines("a\r\nb"), 2U);
  EXPECT_EQ(CountLines("a\rb\r"), 2U);
  EXPECT_EQ(CountLines("a\nb"), 1U);
  EXPECT_EQ(GetLine("a\r\nb\r\n", 2), "b");
  EXPECT_EQ(GetLine("a\r\nb\r\n", 3), "");
  EXPECT_EQ(GetLine("a\r\nb", 2), "b");
  EXPECT_EQ(GetLine("a\nb", 1), "ab");
  EXPECT_EQ(GetLine("a", 0), "");
  EXPECT_EQ(GetLine("a", 9), "");
}

}  // namespace
}  // namespace tallowin::core
