#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <utility>
#include <vector>

#include "analysis/CFileInfo.h"
#include "analysis/FileAnalysis.h"
#include "analysis/FileReport.h"
#include "analysis/FileSizeText.h"
#include "analysis/ResourceStrings.h"
#include "core/MiscRoutines.h"
#include "forms/Form.h"
#include "support/FakeHost.h"

namespace tallowin::analysis {
namespace {

namespace attribute = platform::attribute;
using forms::MousePointer;

class CFileInfoTest : public testing::Test {
 protected:
  test::FakeHost host_;
  CFileInfo info_{host_.fileFacts, host_.paths, host_.regional};

  void SetUp() override {
    host_.paths.allHaveShortPaths = true;
    Add("/Data", "Data", attribute::kFolder);
    Add("/Data/My Things", "My Things", attribute::kFolder);
    auto& file = Add("/Data/My Things/Setup.1.Exe", "Setup.1.Exe", attribute::kArchive);
    file.size = 0x1'8000'0001;
    file.modifyTime = platform::FileTime(std::chrono::milliseconds(1999));
  }
  platform::FoundFile& Add(const std::string& path, std::string name, std::uint32_t attributes) {
    auto& entry = host_.fileFacts.entries[test::Lower(path)];
    entry.fileName = std::move(name);
    entry.attributes = attributes;
    return entry;
  }
};

TEST_F(CFileInfoTest, TakesNamesAsTheyAreSpeltOnDisk) {
  info_.SetFullPathName("/DATA/my things/SETUP.1.EXE");
  EXPECT_TRUE(info_.FileExists());
  EXPECT_EQ(info_.FullPathName(), "/Data/My Things/Setup.1.Exe");
  EXPECT_EQ(info_.FilePath(), "/Data/My Things/");
  EXPECT_EQ(info_.FileName(), "Setup.1.Exe");
  EXPECT_EQ(info_.FileExtension(), "Exe");
  EXPECT_EQ(info_.ShortName(), "SETUP.1.EXE");
  EXPECT_EQ(info_.FileSize(), -0x7FFFFFFF);
  EXPECT_EQ(info_.FileSizeHigh(), 1);
  EXPECT_EQ(info_.ModifyTime(), platform::FileTime(std::chrono::seconds(1)));
  EXPECT_TRUE(info_.attrArchive());
  EXPECT_FALSE(info_.attrReadOnly());
}

TEST_F(CFileInfoTest, AFolderOnTheWayThatIsNoneEmptiesThePath) {
  Add("/Data/plain", "plain", attribute::kNormal);
  Add("/Data/plain/x", "x", attribute::kNormal);
  info_.SetFullPathName("/data/plain/x");
  EXPECT_EQ(info_.FilePath(), "/");
  EXPECT_EQ(info_.FullPathName(), "/x");
}

TEST(FileSizes, HaveThreeDigitsAndTheirUnit) {
  for (const auto& [size, text] : std::vector<std::pair<std::int32_t, std::string>>{
           {0, "0 bytes"},
           {1023, "1,023 bytes"},
           {1024, "1.00KB (1,024 bytes)"},
           {1029, "1.00KB (1,029 bytes)"},
           {1152, "1.13KB (1,152 bytes)"},  // exactly 1.125
           {10239, "10.00KB (10,239 bytes)"},
           {10240, "10.0KB (10,240 bytes)"},
           {102400, "100KB (102,400 bytes)"},
           {1023999, "1000KB (1,023,999 bytes)"},
           {1024000, "0.98MB (1,024,000 bytes)"},
           {10240000, "9.8MB (10,240,000 bytes)"},
           {102400000, "98MB (102,400,000 bytes)"},
           {1024000000, "0.95GB (1,024,000,000 bytes)"},
           {2147483647, "2.00GB (2,147,483,647 bytes)"},
           {-1073741824, "-1,073,741,824 bytes"}}) {
    EXPECT_EQ(FileSizeText(size, {}), text);
  }
  EXPECT_EQ(FileSizeText(1234, {.decimalPoint = ",", .thousandsSeparator = "."}),
            "1,21KB (1.234 bytes)");
}

struct ReportRows : PropertyRows {
  std::vector<std::pair<std::string, std::string>> rows;
  std::string icon;
  void ShowIcon(const platform::FileIcon& shown) override { icon = shown.name; }
  void Clear() override { rows.clear(); }
  void Add(const std::string& property) override { rows.emplace_back(property, ""); }
  void SetValue(const std::string& value) override { rows.back().second = value; }
};

struct RatingTest : testing::Test {
  test::FakeHost host_;
  core::MiscRoutines misc_{host_.paths, host_.loop};
  ReadFile readFile_{misc_, host_.files};
  TrojanDetect detect_{misc_, readFile_, host_.loop};
};

class FileReportTest : public RatingTest {
 protected:
  ReportRows shown_;
  FileReport report_{{host_.fileFacts, host_.versionInfo, host_.paths, host_.regional},
                     readFile_,
                     detect_,
                     shown_};
  std::string path_ = host_.folder.Path() + "/a.txt";

  void SetUp() override {
    std::ofstream(path_) << "123456789";
    auto& entry = host_.fileFacts.entries[test::Lower(path_)];
    entry.fileName = "a.txt";
    entry.size = 1024;
    entry.modifyTime = platform::FileTime(std::chrono::seconds(1));
    entry.lastAccessTime = platform::FileTime(std::chrono::seconds(2));
    entry.attributes = platform::attribute::kArchive | platform::attribute::kHidden;
    host_.fileFacts.shellInfo = {.displayName = {}, .typeName = "text", .icon = {"text-plain", {}}};
  }
};

TEST_F(FileReportTest, EachAttributeHasItsRow) {
  using namespace platform::attribute;
  const std::vector<std::uint32_t> inOrder = {kReadOnly, kArchive,    kHidden,
                                              kSystem,   kCompressed, kTemporary};
  for (std::size_t set = 0; set < inOrder.size(); ++set) {
    host_.fileFacts.entries.begin()->second.attributes = inOrder[set];
    report_.ShowFileFacts(path_);
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
      EXPECT_EQ(shown_.rows.at(6 + i).second, i == set ? "True" : "False") << set << " " << i;
    }
  }
}

TEST_F(FileReportTest, TheFirstRowCalledLanguageHasTheTradeMarks) {
  const std::vector<std::string> inOrder = {
      "ProductName", "FileDescription", "FileVersion",   "LegalCopyright",  "LegalTrademarks",
      "CompanyName", "InternalName",    "Language 1033", "OriginalFilename"};
  host_.versionInfo.values = {{"\\", std::string(52, '\0')},
                              {"\\VarFileInfo\\Translation", std::string("\x09\x04\xE4\x04", 4)}};
  for (const std::string& name : inOrder) {
    host_.versionInfo.values->emplace("\\StringFileInfo\\040904E4\\" + name, name);
  }
  report_.ShowFileFacts(path_);
  for (std::size_t i = 0; i < inOrder.size(); ++i) {
    EXPECT_EQ(shown_.rows.at(15 + i).second, inOrder[i]);
  }
  host_.versionInfo.values.reset();
  report_.ShowFileFacts(path_);
  EXPECT_EQ(shown_.rows.at(19).second, "");
}

TEST_F(FileReportTest, WhatCannotBeHadLeavesItsRowEmpty) {
  host_.files.unreadable.insert(path_);
  host_.fileFacts.entries.begin()->second.attributes = platform::attribute::kCompressed;
  host_.fileFacts.compressedSize = 512;
  report_.ShowFileFacts(path_);
  EXPECT_EQ(shown_.rows.size(), 25U);
  EXPECT_EQ(shown_.rows.at(13).second, "512 bytes");
  EXPECT_EQ(shown_.rows.at(14).second, "0");

  host_.paths.allHaveShortPaths = true;
  report_.ShowFileFacts("/" + std::string(162, 'x'));
  EXPECT_EQ(shown_.rows.at(1).second.size(), 163U);
  report_.ShowFileFacts("/" + std::string(163, 'x'));
  EXPECT_EQ(shown_.rows.at(1).second, "");
  std::string umlauts = "/";
  for (int i = 0; i < 162; ++i) umlauts += "\xC3\xBC";
  report_.ShowFileFacts(umlauts);
  EXPECT_EQ(shown_.rows.at(1).second, umlauts) << "characters are counted, not bytes";
  EXPECT_EQ(shown_.rows.size(), 25U);
}

class FileAnalysisTest : public RatingTest {
 protected:
  FileAnalysisTest() {
    std::ofstream(path_) << "123456789";
    host_.fileFacts.entries[test::Lower(path_)].fileName = "a.dll";
    host_.fileFacts.shellInfo.icon = {.name = "exact", .genericName = "generic"};
    host_.modules.types = {{.value = platform::resource_type::kString}};
    host_.modules.names["6"] = {{.value = 1}};
    host_.modules.strings = {{1, "Safe one"}, {2, "a trojan"}};
  }
  void Scan(const std::string& path) {
    form_.Text1.SetText(path);
    form_.Command2.Click();
  }

  test::ScriptedQuestions questions_;
  StringExtractFrm form_;
  FileAnalysis analysis_{{.host = {host_.fileFacts, host_.versionInfo, host_.paths, host_.regional},
                          .modules = host_.modules,
                          .misc = misc_,
                          .readFile = readFile_,
                          .detect = detect_,
                          .loop = host_.loop,
                          .questions = questions_},
                         form_};
  std::string path_ = host_.folder.Path() + "/a.dll";
};

TEST_F(FileAnalysisTest, AWindowClosedInTheMiddleEndsTheScan) {
  form_.SetVisible(true);
  std::size_t rows = 0;
  const auto observation = form_.StringTableView.Observe([&](const forms::Change& change) {
    if (change.property != forms::Property::AddedItem) return;
    ++rows;
    host_.loop.pending.push_back([&] {
      form_.Hide();
      EXPECT_EQ(form_.MousePointer(), MousePointer::Normal);
      host_.loop.pending.push_back([&] { form_.Hide(); });
      analysis_.Show();
    });
  });
  Scan(path_);
  EXPECT_EQ(rows, 1U);
  EXPECT_EQ(form_.StringTableView.RowCount(), 0U);
  EXPECT_EQ(form_.LstTypes.ListCount(), 0U);
}

TEST_F(FileAnalysisTest, ACancelledDialogShowsWhatItHeld) {
  form_.Text1.SetText("typed");
  form_.Command1.Click();
  EXPECT_EQ(form_.Text1.Text(), "");
  questions_.typed = {"/chosen"};
  form_.Command1.Click();
  form_.Text1.SetText("typed");
  form_.Command1.Click();
  EXPECT_EQ(form_.Text1.Text(), "/chosen");
}

struct TextRows : StringRows {
  std::vector<std::string> texts;  ///< "id text suspicion"
  std::function<void()> whileRating;
  void Clear() override { texts.clear(); }
  void Add(const std::string& id, const std::string& text) override {
    texts.push_back(id + " " + text);
    if (whileRating) std::exchange(whileRating, {})();
  }
  void SetSuspicion(const std::string& suspicion) override { texts.back() += " " + suspicion; }
};

struct Lists : forms::Form {
  Lists() : Form("Lists") {}
  forms::ListBox LstTypes{*this, "LstTypes"};
  forms::ListBox lstnames{*this, "lstnames"};
};

class ResourceStringsTest : public RatingTest {
 protected:
  Lists lists_;
  TextRows rows_;
  ResourceStrings strings_{host_.modules,   detect_,         host_.loop,
                           lists_.LstTypes, lists_.lstnames, rows_};

  void Give(std::vector<platform::ResourceId> bundles, std::int32_t first, std::int32_t last) {
    host_.modules.types = {{.value = 6}};
    host_.modules.names["6"] = std::move(bundles);
    for (std::int32_t id = first; id <= last; ++id) host_.modules.strings[id] = "t";
  }
};

TEST_F(ResourceStringsTest, ABundleIsAskedForIdsOneTooHigh) {
  Give({{.value = 1}, {.value = 2}}, 0, 31);
  strings_.ExtractStringTable("/x.dll");
  ASSERT_EQ(rows_.texts.size(), 31U);
  EXPECT_EQ(rows_.texts.front(), "1 t Safe");
  EXPECT_EQ(rows_.texts.back(), "31 t Safe");
  EXPECT_EQ(host_.modules.open, 0);

  host_.modules.strings.clear();
  Give({{.value = 3}}, 32, 47);
  strings_.ExtractStringTable("/x.dll");
  ASSERT_EQ(rows_.texts.size(), 15U);
  EXPECT_EQ(rows_.texts.front(), "33 t Safe");
}

TEST_F(ResourceStringsTest, TextsKeepTheirCapitalsAndAreCut) {
  Give({{.value = 1}}, 1, 0);
  host_.modules.strings = {{1, "My WINSOCK"},
                           {2, std::string("end\0\0", 5)},
                           {3, std::string(300, 'x')},
                           {4, std::string(2, '\0')}};
  strings_.ExtractStringTable("/x.dll");
  EXPECT_EQ(rows_.texts,
            (std::vector<std::string>{"1 My WINSOCK Medium", "2 end Safe",
                                      "3 " + std::string(254, 'x') + " Safe", "4  Safe"}));
}

TEST_F(ResourceStringsTest, TheLastTypeCalledStringGivesTheNames) {
  Give({{.value = 1}}, 1, 20);
  host_.modules.types.push_back({.value = 0x20000, .name = "String"});
  host_.modules.names["String"] = {{.value = 2}};
  strings_.ExtractStringTable("/x.dll");
  ASSERT_EQ(rows_.texts.size(), 4U);
  EXPECT_EQ(rows_.texts.front(), "17 t Safe");
}

TEST_F(ResourceStringsTest, AScanDuringAScanIsTheOneThatCounts) {
  Give({{.value = 1}}, 1, 3);
  rows_.whileRating = [&] { strings_.ExtractStringTable("/y.dll"); };
  strings_.ExtractStringTable("/x.dll");
  EXPECT_EQ(rows_.texts, (std::vector<std::string>{"1 t Safe", "2 t Safe", "3 t Safe"}));
  EXPECT_EQ(host_.modules.open, 0);
}

}  // namespace
}  // namespace tallowin::analysis
