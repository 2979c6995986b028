#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxResourceModules.h"
#include "platform/linux/LinuxVersionInfo.h"
#include "platform/linux/PeFile.h"
#include "platform/linux/TemporaryHome.h"

namespace tallowin::platform::linux_host {
namespace {

using test::kFolderFlag;

class ExecutableResourcesTest : public testing::TestWithParam<const char*> {
 protected:
  test::TemporaryHome home_;
  WindowsDrive drive_{home_.Folders()};
  LinuxResourceModules modules_{drive_};
  LinuxVersionInfo versions_{drive_};
  std::string path_ = std::string(TALLOWIN_SAMPLES) + "/sample-" + GetParam() + ".dll";

  static std::string Text(const ResourceId& id) {
    return id.IsName() ? id.name : std::to_string(id.value);
  }
};

INSTANTIATE_TEST_SUITE_P(Widths, ExecutableResourcesTest, testing::Values("i686", "x86_64"));

TEST_P(ExecutableResourcesTest, NamesTypesAndResourcesInTheOrderOfTheFile) {
  const auto module = modules_.LoadLibraryAsDataFile(path_);
  ASSERT_TRUE(module);
  std::vector<std::string> found;
  const auto keep = [&](const ResourceId& id) {
    found.push_back(Text(id));
    return true;
  };
  EXPECT_TRUE(module->EnumResourceTypes(keep));
  EXPECT_EQ(found, (std::vector<std::string>{"NAMEDTYPE", "STRING", "6", "16"}));
  found.clear();
  EXPECT_TRUE(module->EnumResourceNames({.value = 6}, keep));
  EXPECT_EQ(found, (std::vector<std::string>{"1", "2", "4"}));
  found.clear();
  EXPECT_TRUE(module->EnumResourceNames({.value = 0x12345, .name = "String"}, keep));
  EXPECT_EQ(found, (std::vector<std::string>{"WORD"}));
  EXPECT_FALSE(module->EnumResourceNames({.value = 99}, keep));

  int calls = 0;
  EXPECT_FALSE(module->EnumResourceTypes([&](const auto&) { return ++calls < 2; }));
  EXPECT_EQ(calls, 2);
}

TEST_P(ExecutableResourcesTest, LoadsStringsInTheUsersLanguage) {
  const auto module = modules_.LoadLibraryAsDataFile(path_);
  ASSERT_TRUE(module);
  const auto load = [&](std::int32_t id) { return module->LoadString(id, 255); };
  EXPECT_EQ(load(0), "zero");
  EXPECT_EQ(load(1), "One Winsock");  // and not the German one, which stands first in the file
  EXPECT_EQ(load(15), "fifteen");
  EXPECT_EQ(load(16), "sixteen");
  EXPECT_EQ(load(31), "thirty-one");
  for (const std::int32_t none : {2, 32, 47, -1, -15, 0x10001, 0x7FFFFFFF}) {
    EXPECT_EQ(load(none), "") << none;
  }
  EXPECT_EQ(load(50).size(), 254U);
  EXPECT_EQ(module->LoadString(50, 10), "long text");
  EXPECT_EQ(load(51).substr(250), "012\xEF\xBF\xBD");  // half a pair is left at the end
  EXPECT_EQ(module->LoadString(51, 256).substr(250), "012\xF0\x9F\x98\x80");
}

TEST_P(ExecutableResourcesTest, AVersionTextEndsAtItsNulWhateverItsNodeSays) {
  std::string bytes = test::FileText(path_);
  std::string key;
  for (const char c : std::string("FileDescription")) key += {c, '\0'};
  const auto at = bytes.find(key);
  ASSERT_NE(at, std::string::npos);
  bytes[at - 2] = 0;  // the length of the text is said to count bytes
  const std::string path = home_.Path() + "/careless.dll";
  test::WriteFile(path, bytes);
  EXPECT_EQ(versions_.GetFileVersionInfo(path)->VerQueryValue(
                "\\StringFileInfo\\040904E4\\FileDescription"),
            "Tools \xC3\xBC\x62\x65r alles");
}

class HostileExecutableTest : public testing::Test {
 protected:
  test::TemporaryHome home_;
  WindowsDrive drive_{home_.Folders()};
  LinuxResourceModules modules_{drive_};
  LinuxVersionInfo versions_{drive_};
  std::string path_ = home_.Path() + "/file";

  std::unique_ptr<ResourceModule> Open(const std::string& bytes) {
    test::WriteFile(path_, bytes);
    return modules_.LoadLibraryAsDataFile(path_);
  }
  static std::vector<ResourceId> TypesOf(ResourceModule& module) {
    std::vector<ResourceId> types;
    module.EnumResourceTypes([&](const auto& type) {
      types.push_back(type);
      return true;
    });
    return types;
  }
  static std::size_t CountNames(ResourceModule& module, const ResourceId& type) {
    std::size_t count = 0;
    module.EnumResourceNames(type, [&](const auto&) { return ++count > 0; });
    return count;
  }
};

TEST_F(HostileExecutableTest, WhatIsNoPeFileIsNotOpened) {
  for (const std::string& bytes :
       {std::string(), std::string("M"), std::string("MZ"), "MZ" + std::string(62, '\xFF'),
        "\x7F"
        "ELF" +
            std::string(200, '\0'),
        std::string("just a text\r\n")}) {
    EXPECT_FALSE(Open(bytes)) << bytes;
    EXPECT_FALSE(versions_.GetFileVersionInfo(path_)) << bytes;
  }
  ASSERT_EQ(mkfifo((home_.Path() + "/pipe").c_str(), S_IRWXU), 0);
  const FileDescriptor watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  ASSERT_GE(inotify_add_watch(watch.Get(), (home_.Path() + "/pipe").c_str(), IN_OPEN), 0);
  for (const char* name : {"/pipe", "/none", ""}) {
    EXPECT_FALSE(modules_.LoadLibraryAsDataFile(home_.Path() + name)) << name;
  }
  std::array<char, 512> events;
  EXPECT_EQ(read(watch.Get(), events.data(), events.size()), -1) << "the pipe has been opened";
  EXPECT_FALSE(modules_.LoadLibraryAsDataFile(path_ + std::string("\0x", 2)));
}

/// All bundles share one list of languages, which is as long as it can be.
TEST_F(HostileExecutableTest, LoadsAllIdsOfAFileThatSharesEverythingInTime) {
  std::string tree;
  std::vector<test::TreeEntry> bundles;
  const std::uint32_t languages = 24 + 16 + 8 * 4096;
  const std::uint32_t leaf = languages + 16 + 8 * 0xFFFF;
  for (std::uint32_t i = 1; i <= 4096; ++i) bundles.push_back({i, languages | kFolderFlag});
  test::PutDirectory(tree, 0, {{6, 24 | kFolderFlag}});
  test::PutDirectory(tree, 24, bundles);
  test::PutDirectory(tree, languages, std::vector<test::TreeEntry>(0xFFFF, {0x1FF, leaf}));
  std::string texts;
  for (int i = 0; i < 16; ++i) texts += std::string("\x01\0x\0", 4);
  test::PutLeaf(tree, leaf, leaf + 16, static_cast<std::uint32_t>(texts.size()));
  const auto module = Open(test::PeFile(tree + texts));
  std::size_t found = 0;
  for (std::int32_t id = 0; id <= 0xFFFF; ++id) found += module->LoadString(id, 255).size();
  EXPECT_EQ(found, 0x10000U);
}

TEST_F(HostileExecutableTest, NamesOnTopOfEachOtherAreNotReadWithoutEnd) {
  constexpr std::uint32_t kNames = 2000;
  constexpr std::uint32_t kText = 16 + 8 * kNames;
  std::string tree;
  std::vector<test::TreeEntry> types;
  for (std::uint32_t i = 0; i < kNames; ++i) types.push_back({kFolderFlag | (kText + 2 * i), 0});
  test::PutDirectory(tree, 0, types);
  // Each unit is both the length of a name and a part of those in front of it.
  for (std::uint32_t i = 0; i < 0x9000; ++i) test::Put(tree, kText + 2 * i, 0x8000 - i, 2);
  tree.resize(8U << 20U);
  std::size_t kept = 0;
  for (const ResourceId& type : TypesOf(*Open(test::PeFile(tree)))) kept += type.name.size();
  EXPECT_GT(kept, 1U << 20U);
  EXPECT_LE(kept, 3U << 20U);
}

}  // namespace
}  // namespace tallowin::platform::linux_host
