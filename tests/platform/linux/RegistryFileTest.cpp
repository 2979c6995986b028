#include "platform/linux/RegistryFile.h"

#include <gtest/gtest.h>

#include "platform/linux/RegistryText.h"
#include "platform/linux/SqliteRegistry.h"
#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host {
namespace {

namespace fs = std::filesystem;
using Key = std::unique_ptr<RegistryKey>;

const std::string kFour = "REGEDIT4\r\n";
const std::string kFive = "Windows Registry Editor Version 5.00\r\n";
const std::string kKey = "[HKEY_CURRENT_USER\\K]\r\n";

std::string Utf16(const std::string& text) { return "\xFF\xFE" + ToUtf16(text); }

class RegistryFileTest : public ::testing::Test {
 protected:
  SqliteRegistry NewStore() {
    return SqliteRegistry(folder_ / (std::to_string(++stores_) + ".sqlite"));
  }
  static RegistryValue Get(Registry& registry, std::string_view name) {
    Key key;
    RegistryValue value{999, "missing"};
    if (registry.OpenKey(RegistryRoot::CurrentUser, "K", key) == registry::kSuccess) {
      static_cast<void>(key->QueryValue(name, value));
    }
    return value;
  }
  test::TemporaryHome home_;
  fs::path folder_ = home_.Path();
  int stores_ = 0;
};

TEST_F(RegistryFileTest, ReadsEachKindOfDataInBothFormats) {
  struct Case {
    std::string content;
    RegistryValue expected;
  };
  const std::vector<Case> cases{
      {kFour + kKey + R"("v"="a\\b\"c]=;d" ; comment)", {1, R"(a\b"c]=;d)"}},
      {kFour + kKey + "  \"v\" = \"\"", {1, ""}},
      {kFour + kKey + "\"v\"=dword:0000aBc1;x", RegistryValue::Dword(0xABC1)},
      {kFour + kKey + "\"v\"=hex:", {3, ""}},
      {kFour + kKey + "\"v\"=hex:01,2,\\\r\n  ff ; end\r\n", {3, "\x01\x02\xFF"}},
      {kFour + kKey + "\"v\"=hex(2):41,e4,00", {2, "A\xE4"}},
      {kFive + kKey + "\"v\"=hex(2):41,00,e4,00,00,00", {2, "A\xC3\xA4"}},
      {kFive + kKey + "\"v\"=hex(7):41,00,00,00,42,00,00,00,00,00", {7, std::string("A\0B\0", 4)}},
      {kFive + kKey + "\"v\"=hex(1):3d,d8,00,de,00,00", {1, "\xF0\x9F\x98\x80"}},
      {kFive + kKey + "\"v\"=hex(b):01,00", {11, std::string("\x01\0", 2)}},
      {Utf16(kFive + kKey + "\"v\"=\"\xE2\x82\xAC\xE4\x98\x8A\""), {1, "\xE2\x82\xAC\xE4\x98\x8A"}},
      {"\xEF\xBB\xBF" + kFive + kKey + "\"v\"=\"\xC3\xA4\"", {1, "\xC3\xA4"}},
      {"REGEDIT4\n; c\n[hkcu\\K]\n\"v\"=\"1\"\n", {1, "1"}},
      {kFour + kKey + "\"v\"=\"1\"\r\n\"V\"=-\r\n\"none\"=-", {999, "missing"}},
      {kFour + kKey + "\"v\"=\"1\"\r\n[-HKEY_CURRENT_USER\\K]\r\n[-HKEY_CURRENT_USER\\none]\r\n",
       {999, "missing"}},
  };
  for (const Case& each : cases) {
    SqliteRegistry registry = NewStore();
    const auto result = ImportRegistryText(each.content, registry);
    EXPECT_TRUE(result.ok) << each.content << result.line << result.reason;
    EXPECT_EQ(Get(registry, "v"), each.expected) << each.content;
  }
  SqliteRegistry registry = NewStore();
  ASSERT_TRUE(ImportRegistryText(kFour + kKey + "@=\"default\"", registry).ok);
  EXPECT_EQ(Get(registry, "").data, "default");
}

TEST_F(RegistryFileTest, ImportsWhatStandsBeforeAFaultAndTellsTheLine) {
  const std::vector<std::string> faults{"[HKEY_NOWHERE\\K]",
                                        "[HKEY_CURRENT_USER\\K",
                                        "[-HKEY_CURRENT_USER]",
                                        "nonsense",
                                        "\"w\"",
                                        "\"w=\"1\"",
                                        "\"w\"=\"1",
                                        "\"w\"=\"C:\\new\"",
                                        "\"w\"=\"1\"2",
                                        "\"w\"=1",
                                        "\"w\"=dword:",
                                        "\"w\"=dword:123456789",
                                        "\"w\"=dword:-1",
                                        "\"w\"=hex:0g",
                                        "\"w\"=hex:01,,02",
                                        "\"w\"=hex:100",
                                        "\"w\"=hex(:00",
                                        "\"w\"=hex(xyz):00",
                                        "\"w\"=hex(2):00",
                                        "\"w\"=hex(2):00,d8",
                                        std::string("\"w\"=\"a\0b\"", 9)};
  for (const std::string& fault : faults) {
    for (const bool wide : {false, true}) {
      const std::string text = kFive + kKey + "\"v\"=\"1\"\r\n" + fault + "\r\n\"after\"=\"1\"\r\n";
      SqliteRegistry registry = NewStore();
      const auto result = ImportRegistryText(wide ? Utf16(text) : text, registry);
      EXPECT_FALSE(result.ok) << fault;
      EXPECT_EQ(result.line, 4) << fault;
      EXPECT_FALSE(result.reason.empty());
      EXPECT_EQ(Get(registry, "v").data, "1");
      EXPECT_EQ(Get(registry, "w").data, "missing") << fault;
      EXPECT_EQ(Get(registry, "after").data, "missing") << fault;
    }
  }
}

TEST_F(RegistryFileTest, TellsTheLineOfFaultsThatAreNotInAStatementOfTheirOwn) {
  for (const auto& [content, line] : std::vector<std::pair<std::string, int>>{
           {"", 0},
           {kFour + "\"v\"=\"1\"", 2},                                // no key yet
           {kFour + "[-HKEY_CURRENT_USER\\K]\r\n\"v\"=\"1\"", 3},     // and no key any more
           {kFour + kKey + "\"v\"=hex:00,\\\r\n  01,\\\r\n  zz", 5},  // within the data
           {Utf16(kFive + kKey) + "x", 3}}) {                         // half a character
    SqliteRegistry registry = NewStore();
    const auto result = ImportRegistryText(content, registry);
    EXPECT_FALSE(result.ok) << content;
    EXPECT_EQ(result.line, line) << content << result.reason;
  }
}

TEST_F(RegistryFileTest, ExportsWhatAnImportReadsBackTheSame) {
  SqliteRegistry registry = NewStore();
  const std::vector<RegistryValue> values{
      {1, "plain \\ \" ; = ] \t \xE2\x82\xAC"},
      {1, "two\r\nlines"},
      {1, std::string("nul\0inside\0", 11)},
      {1, "no \xFF\xC3 utf-8 \xED\xA0\x80 \xF0\x9F\x98\x80\x80"},
      {2, "%HOME%"},
      RegistryValue::Dword(0xFFFFFFFE),
      {7, std::string("a\0bc\0", 5)},
      {7, "open"},
      {7, ""},
      {0, "none"},
      {0xFFFFFFFF, "odd"},
  };
  Key key;
  for (const char* path : {"Z\\Empty", "K", "K\\Sub [1]", "A"}) {
    ASSERT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, path, key), registry::kSuccess);
    for (std::size_t i = 0; path != std::string("Z\\Empty") && i < values.size(); ++i) {
      const std::string name = i == 3 ? "" : "v\"\\=" + std::to_string(i) + "\xFF\xC3\xA4";
      ASSERT_EQ(key->SetValue(name, values[i]), registry::kSuccess);
    }
  }
  ASSERT_EQ(registry.CreateKey(RegistryRoot::Users, "S-1", key), registry::kSuccess);

  const std::string first = folder_ / "first.reg";
  const std::string second = folder_ / "second.reg";
  ASSERT_TRUE(ExportWholeRegistry(first, registry).ok);
  SqliteRegistry copy = NewStore();
  const auto result = ImportRegistryFile(first, copy);
  ASSERT_TRUE(result.ok) << result.line << result.reason;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::string name = i == 3 ? "" : "v\"\\=" + std::to_string(i) + "\xFF\xC3\xA4";
    EXPECT_EQ(Get(copy, name), values[i]) << i;
  }
  ASSERT_TRUE(ExportWholeRegistry(second, copy).ok);
  EXPECT_EQ(test::FileText(first), test::FileText(second));  // keys, order and empty keys included

  ASSERT_TRUE(ExportRegistryKey(second, {RegistryRoot::CurrentUser, "K\\Sub [1]"}, copy).ok);
  EXPECT_EQ(test::FileText(second).find(ToUtf16("[HKEY_CURRENT_USER\\A]")), std::string::npos);
}

TEST_F(RegistryFileTest, WrapsHexLikeTheRegistryEditor) {
  SqliteRegistry registry = NewStore();
  Key key;
  ASSERT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, "K", key), registry::kSuccess);
  ASSERT_EQ(key->SetValue("v", {3, std::string(30, '\x01')}), registry::kSuccess);
  const std::string path = folder_ / "wrapped.reg";
  ASSERT_TRUE(ExportRegistryKey(path, {RegistryRoot::CurrentUser, "K"}, registry).ok);
  EXPECT_EQ(
      test::FileText(path),
      Utf16(kFive + "\r\n" + kKey +
            "\"v\"=hex:01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,01,\\"
            "\r\n  01,01,01,01,01,01,01\r\n\r\n"));
}

}  // namespace
}  // namespace tallowin::platform::linux_host
