#include "trojansentry/CReadWriteEasyReg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FakeHost.h"

namespace tallowin::trojansentry {
namespace {

using namespace std::string_literals;
using core::Variant;
using platform::RegistryRoot;
using platform::RegistryValue;
using testing::ElementsAre;
namespace registry = platform::registry;

const EasyRegVariant kNothing;
const EasyRegVariant kNoArray = VariantArray();

struct CReadWriteEasyRegTest : testing::Test {
  test::FakeRegistry store;
  test::ScriptedQuestions questions;
  CReadWriteEasyReg reg{store, questions};
  test::FakeRegistry::Values& values = store.keys["software\\x"];

  void SetUp() override { ASSERT_TRUE(reg.OpenRegistry(RegistryRoot::CurrentUser, "Software\\X")); }
  EasyRegVariant Shown(std::uint32_t type, std::string data, bool raw = false) {
    values = {{"v", {type, std::move(data)}}};
    return reg.GetValue("V", raw);
  }
};

std::vector<std::string> Texts(const EasyRegVariant& value) {
  std::vector<std::string> texts;
  for (const Variant& part : std::get<VariantArray>(value).value()) {
    texts.push_back(core::ToText(part));
  }
  return texts;
}

TEST_F(CReadWriteEasyRegTest, AClosedObjectDoesNothing) {
  values = {{"v", RegistryValue::Text("t")}};
  const auto before = store.keys;
  EXPECT_TRUE(reg.CloseRegistry());
  EXPECT_FALSE(reg.CloseRegistry());
  EXPECT_EQ(reg.GetAllValues(), kNothing);
  EXPECT_EQ(reg.GetAllSubDirectories(), kNothing);
  EXPECT_EQ(reg.GetValue("v", false), kNothing);
  EXPECT_FALSE(reg.DeleteValue("v"));
  EXPECT_FALSE(reg.CreateValue("w", "t", registry::kSz));
  EXPECT_FALSE(reg.CreateDirectory("sub"));
  EXPECT_FALSE(reg.DeleteDirectory("sub"));
  EXPECT_EQ(store.keys, before);
}

TEST_F(CReadWriteEasyRegTest, OpeningReplacesTheKeyAndRootNoneOnlyForgetsThatItIsOpen) {
  store.keys["machine:other"] = {{"name", RegistryValue::Text("t")}};
  EXPECT_TRUE(reg.OpenRegistry(RegistryRoot::LocalMachine, "Other"));
  EXPECT_EQ(reg.GetValue("name", false), EasyRegVariant("t"));

  EXPECT_FALSE(reg.OpenRegistry(RegistryRoot::None, "ignored"));
  EXPECT_EQ(reg.SubDirectory(), "Other");
  EXPECT_EQ(reg.RegistryRootKey(), RegistryRoot::LocalMachine);
  EXPECT_EQ(reg.GetAllValues(), kNothing);
  EXPECT_TRUE(reg.CloseRegistry()) << "the key behind it was still open";

  EXPECT_FALSE(reg.OpenRegistry(RegistryRoot::CurrentUser, "missing"));
  EXPECT_EQ(reg.SubDirectory(), "missing");
  EXPECT_EQ(reg.GetAllValues(), kNothing);
}

TEST_F(CReadWriteEasyRegTest, NamesOfValuesStandFromSlotOneOn) {
  EXPECT_EQ(reg.GetAllValues(), kNoArray);
  values = {{"c", {}}, {"a"s + '\0' + "cut", {}}, {"b", {}}};
  EXPECT_THAT(Texts(reg.GetAllValues()), ElementsAre("", "c", "a", "b"));
  EXPECT_EQ(NameCount(std::get<VariantArray>(reg.GetAllValues())), 3U);
  EXPECT_EQ(NameCount(std::nullopt), 0U);
}

TEST_F(CReadWriteEasyRegTest, TheFirstValueThatIsTooLongEndsTheList) {
  const auto listed = [&](const std::string& name, std::uint32_t type, std::size_t size) {
    values = {{"first", {}}, {name, {type, std::string(size, 'x')}}, {"last", {}}};
    return Texts(reg.GetAllValues()).size() == 4;
  };
  EXPECT_TRUE(listed(std::string(239, 'n'), registry::kSz, 239)) << "with the NULs it is 240";
  EXPECT_FALSE(listed(std::string(240, 'n'), registry::kSz, 1));
  EXPECT_FALSE(listed("n", registry::kExpandSz, 240));
  EXPECT_TRUE(listed("n", registry::kBinary, 240));
  EXPECT_FALSE(listed("n", registry::kBinary, 241));
}

TEST_F(CReadWriteEasyRegTest, SubDirectoriesStandFromSlotZeroOn) {
  EXPECT_EQ(reg.GetAllSubDirectories(), kNoArray);
  EXPECT_TRUE(reg.CreateDirectory("one"));
  EXPECT_TRUE(reg.CreateDirectory("two"));
  EXPECT_THAT(Texts(reg.GetAllSubDirectories()), ElementsAre("one", "two"));
  EXPECT_TRUE(reg.DeleteDirectory("one"));
  EXPECT_FALSE(reg.DeleteDirectory("one"));
  EXPECT_FALSE(reg.DeleteDirectory("")) << "that would be the open key itself";
  EXPECT_THAT(Texts(reg.GetAllSubDirectories()), ElementsAre("two"));
}

TEST_F(CReadWriteEasyRegTest, EachTypeHasItsText) {
  const auto text = [&](std::uint32_t type, const std::string& data) {
    return std::get<std::string>(Shown(type, data));
  };
  EXPECT_EQ(text(registry::kSz, "x"), "x");
  EXPECT_EQ(text(registry::kExpandSz, "%x%"), "%x%");
  EXPECT_EQ(text(registry::kDword, "\x04\x03\x02\x01"), "04 03 02 01 ");
  EXPECT_EQ(text(registry::kBinary, "\xFF\0"s), "FF 00 ");
  EXPECT_EQ(Shown(registry::kBinary, "\xFF\0"s, true), EasyRegVariant("\xFF\0"s));
  EXPECT_EQ(Shown(registry::kDword, "\1\0\0\0"s, true), EasyRegVariant("\1\0\0\0"s));
  EXPECT_EQ(text(registry::kDwordBigEndian, "\0\0\0\1"s), "\0\0\0\1"s);
  EXPECT_EQ(text(0, "x"), "Not defined value_type=REG_NONE");
  EXPECT_EQ(text(6, "x"), "Not defined value_type=REG_LINK");
  EXPECT_EQ(text(10, "x"), "Not defined value_type=REG_RESOURCE_REQUIREMENTS_LIST");
  EXPECT_EQ(text(11, "x"), "value_type=11");
  EXPECT_THAT(Texts(Shown(registry::kMultiSz, "a\0b\0"s)), ElementsAre("a", "b", ""));
  EXPECT_THAT(Texts(Shown(registry::kMultiSz, "a\0b"s)), ElementsAre("a", "b"));
  EXPECT_EQ(ToText(Shown(registry::kMultiSz, "a\0b"s)), "a b");
}

TEST_F(CReadWriteEasyRegTest, AValueThatCannotBeReadIsNothingOrATextThatTellsWhy) {
  EXPECT_EQ(reg.GetValue("missing", false), kNothing);
  store.query = registry::kAccessDenied;
  EXPECT_EQ(reg.GetValue("v", false), EasyRegVariant("Access Denied"));
  store.query = registry::kWriteFault;
  EXPECT_EQ(reg.GetValue("v", false), EasyRegVariant("RegQueryValueEx Returned : (29)"));
}

TEST_F(CReadWriteEasyRegTest, CreatedValues) {
  const auto stored = [&](const Variant& data, std::uint32_t type,
                          const EasyRegVariant& others = {}) {
    values.clear();
    EXPECT_TRUE(reg.CreateValue("v", data, type, others));
    return values.at(0).second;
  };
  EXPECT_EQ(stored("t", registry::kSz), RegistryValue::Text("t"));
  EXPECT_EQ(stored(12345, registry::kDword), (RegistryValue{registry::kDword, "1234"}));
  EXPECT_EQ(stored(7, registry::kDword), (RegistryValue{registry::kDword, "7\0\0\0"s}));
  const VariantArray others = std::vector<Variant>{"b", "", Variant(), "\0"s, 3};
  EXPECT_EQ(stored("a", registry::kMultiSz, others).data, "a\0b\0003\0"s);
  EXPECT_EQ(stored("a", registry::kMultiSz, "b").data, "a\0b\0"s);
  EXPECT_EQ(stored("a", registry::kMultiSz).data, "a\0"s);

  EXPECT_TRUE(reg.DeleteValue("V"));
  EXPECT_FALSE(reg.DeleteValue("V"));
  EXPECT_FALSE(reg.CreateValue("v", "t", registry::kBinary));
  EXPECT_TRUE(values.empty());
  ASSERT_EQ(questions.asked.size(), 1U);
  EXPECT_EQ(questions.asked[0].text, "Unable to process that Type of data.");
  EXPECT_EQ(questions.asked[0].style, forms::MessageBoxStyle::Plain);
}

TEST_F(CReadWriteEasyRegTest, OneBackOnKeyEndsAtTheTop) {
  reg.OneBackOnKey();
  EXPECT_EQ(reg.SubDirectory(), "Software");
  EXPECT_EQ(reg.GetAllValues(), kNothing) << "there is no such key";
  store.keys["software"];
  ASSERT_TRUE(reg.OpenRegistry(RegistryRoot::CurrentUser, "Software"));
  try {
    reg.OneBackOnKey();
    FAIL() << "no error";
  } catch (const platform::RunTimeError& error) {
    EXPECT_EQ(error.Number(), 5);
  }
}

TEST(SortArrayAscending, SortsAsVariantsAndLeavesOthersAlone) {
  const VariantArray mixed = std::vector<Variant>{"b", 10, "B", 9, "a", Variant()};
  const auto sorted = CReadWriteEasyReg::SortArrayAscending(mixed);
  EXPECT_EQ(std::get<VariantArray>(sorted),
            VariantArray(std::vector<Variant>{Variant(), 9, 10, "B", "a", "b"}));
  EXPECT_EQ(CReadWriteEasyReg::SortArrayAscending(EasyRegVariant("t")), EasyRegVariant("t"));
  EXPECT_EQ(CReadWriteEasyReg::SortArrayAscending(kNoArray), kNothing);
}

}  // namespace
}  // namespace tallowin::trojansentry
