#include "nettools/WhoisText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "forms/Form.h"

namespace tallowin::nettools {
namespace {

using testing::ElementsAre;

struct Report : forms::Form {
  Report() : Form("Report") {}
  forms::ListBox list{*this, "list"};

  std::vector<std::string> Extract(std::string_view status) {
    ExtractWhoisEmails(status, list);
    std::vector<std::string> entries;
    for (std::size_t i = 0; i < list.ListCount(); ++i) entries.push_back(list.List(i));
    return entries;
  }
};

TEST(WhoisText, AnAnswerLosesPercentSignsAndItsLineFeedsBecomeLineEnds) {
  EXPECT_EQ(ReadableAnswer("  % note\r\n100%\nrole: x \n  "), "note\r\r\n100\r\nrole: x \r\n");
  EXPECT_EQ(ReadableAnswer(" % % "), "");
}

TEST(WhoisText, AddressesAreWordsWithAnAtAndADotBehindIt) {
  Report report;
  EXPECT_THAT(report.Extract("e-mail: mailto:noc@net.example\r\r\n"
                             "  two@a.example  <three@b.example>,\tfour@c.example\r\n"
                             "no@dot dot.no@ .\r\n"
                             "again: noc@net.example\r\n"
                             "NOC@net.example x@.\r\n"),
              ElementsAre("noc@net.example", "two@a.example", "<three@b.example>,\tfour@c.example",
                          "NOC@net.example", "x@."));
  // Only a line end with a CR in it ends a line, and a line feed inside a line joins words.
  EXPECT_THAT(report.Extract("a@b.c\nd"), ElementsAre("a@b.cd"));
  EXPECT_THAT(report.Extract(""), ElementsAre()) << "a run replaces what was there";
}

TEST(WhoisText, RegistriesAreLeftOutWhereverTheirLettersStand) {
  Report report;
  EXPECT_THAT(
      report.Extract("a@RIPE.net hostmaster@arin.net marina@karin.example striped@x.example "
                     "diana@x.example whoiss@x.example Mary@x.example"),
      ElementsAre("Mary@x.example"));
}

TEST(WhoisText, ALongLogIsReadOnceAndALongListKeepsSomeDuplicates) {
  Report report;
  std::string log;
  for (int i = 0; i < 200000; ++i) log += "a line without anything in it, as most of them are\r\n";
  for (int i = 0; i < 400; ++i) log += std::to_string(i) + "@x.example\r\n";
  log += "399@x.example\r\n0@x.example\r\n";
  const auto start = std::chrono::steady_clock::now();
  const auto found = report.Extract(log);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(found.size(), 401U) << "the first is found again, the last no more";
}

}  // namespace
}  // namespace tallowin::nettools
