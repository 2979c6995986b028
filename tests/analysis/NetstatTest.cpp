#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "analysis/AlignColumns.h"
#include "analysis/ListViewMod.h"
#include "analysis/Netstat.h"
#include "core/LineRoutines.h"
#include "core/MiscRoutines.h"
#include "forms/Form.h"
#include "support/ErrorOf.h"
#include "support/Program.h"

namespace tallowin::analysis {
namespace {

using Part = test::FakeIpStatistics::Part;
using platform::TcpRow;
using testing::HasSubstr;

std::string Aligned(std::string text, std::int16_t gap = 2) { return AlignColumns(text, gap); }

/// The rules for breaks one after the other, each repeated until it finds nothing more.
std::string SlowlyNormalised(std::string text) {
  text = core::ReplaceAll(text, "\t", "  ");
  while (text.find("   ") != std::string::npos) text = core::ReplaceAll(text, "   ", "  ");
  while (text.find("  ") != std::string::npos) text = core::ReplaceAll(text, "  ", "\t");
  while (text.find("\t\t") != std::string::npos) text = core::ReplaceAll(text, "\t\t", "\t");
  return text;
}

TEST(AlignColumns, ColumnsStandUnderEachOther) {
  EXPECT_EQ(Aligned("A\tx\r\nBBBB\ty"), "A     x\r\nBBBB  y");
  EXPECT_EQ(Aligned("A  b c\tx\r\n"), "A  b c  x\r\n");
  EXPECT_EQ(Aligned("a\t\tc\r\naa\tb\tc\r\nlongest last cell"),
            "a   c\r\naa  b  c\r\nlongest last cell");
  EXPECT_EQ(Aligned("\xC3\xA4\tx\r\nab\ty", 1), "\xC3\xA4  x\r\nab y");
  EXPECT_EQ(Aligned(""), "");
  EXPECT_EQ(test::ErrorOf([] { (void)Aligned("a\tx\r\nabc\ty", -1); }), 5);
}

TEST(AlignColumns, BreaksAreThoseOfTheRulesInTurn) {
  std::mt19937 random(5);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (auto left = random() % 24; left > 0; --left) text += " \t\r\na "[random() % 6];
    std::string normal = text;
    (void)AlignColumns(normal, 2);
    ASSERT_EQ(normal, SlowlyNormalised(text)) << testing::PrintToString(text);
    const auto lines = core::AllLines(text);
    ASSERT_EQ(lines.size(), core::CountLines(text));
    for (std::size_t i = 0; i < lines.size(); ++i) {
      ASSERT_EQ(lines[i], core::GetLine(text, i + 1));
    }
  }
}

struct Table : forms::Form {
  Table() : Form("Table") {}
  forms::ListView list{*this, "list", {"A", "B"}};
};

TEST(ListViewMod, ATextFillsTheListAndComesBack) {
  Table table;
  EXPECT_EQ(LVToString(table.list), "Error LVToString");
  std::string text = "a\tb\tc\r\nd\t\r\n\r\n";
  EXPECT_EQ(LVFromString(table.list, text), "");
  EXPECT_EQ(text, "a\tb\tc\r\nd\t");
  EXPECT_THAT(table.list.Columns(), testing::ElementsAre("A", "B", "2"));
  EXPECT_EQ(LVToString(table.list), "a\tb\tc\r\nd\t\t\r\n");
  table.list.AddItem("/tmp/x\r\n\tforged");
  EXPECT_TRUE(LVToString(table.list).ends_with("\r\n/tmp/x\\x0d\\x0a\\x09forged\t\t\r\n"));
}

struct NetstatTest : testing::Test {
  test::FakeHost host;
  test::Program program{host};
  Netstatfrm& form = program.tallowin.Netstatfrm();
  void SetUp() override {
    auto& statistics = host.ipStatistics;
    std::iota(statistics.ip.begin(), statistics.ip.end(), 100);
    std::iota(statistics.tcp.begin(), statistics.tcp.end(), 200);
    statistics.tcp[3] = 0xFFFFFFFF;
    std::iota(statistics.udp.begin(), statistics.udp.end(), 300);
    std::iota(statistics.icmp.in.begin(), statistics.icmp.in.end(), 400);
    std::iota(statistics.icmp.out.begin(), statistics.icmp.out.end(), 500);
    program.host.ImportPresets(0, 0);
    program.Start();
    program.tallowin.MainForm().inetstatsmnu.Click();
  }
  static std::string RowOf(const forms::ListView& list, std::size_t row) {
    std::string text = list.Text(row);
    for (std::size_t i = 1; i < list.Columns().size(); ++i) text += "|" + list.Text(row, i);
    return text;
  }
};

TEST_F(NetstatTest, EachCounterHasItsRow) {
  EXPECT_EQ(form.GeneralStats.RowCount(), 0U);
  form.Toolbar2.Click("refresh");
  form.Toolbar2.Click("refresh");
  ASSERT_EQ(form.GeneralStats.RowCount(), 69U);
  EXPECT_EQ(RowOf(form.GeneralStats, 0), "All|IP forwarding enabled or disabled|100|N/A");
  EXPECT_EQ(RowOf(form.GeneralStats, 22), "All|number of routes in routing table|122|N/A");
  EXPECT_EQ(RowOf(form.GeneralStats, 26), "TCP|maximum connections|-1|N/A");
  EXPECT_EQ(RowOf(form.GeneralStats, 36), "TCP|outgoing resets|213|");
  EXPECT_EQ(RowOf(form.GeneralStats, 42), "UDP|number of entries in UDP listener table|304|N/A");
  EXPECT_EQ(RowOf(form.GeneralStats, 55), "ICMP|address mask replies|412|In");
  EXPECT_EQ(RowOf(form.GeneralStats, 68), "ICMP|address mask replies|512|Out");
}

TEST_F(NetstatTest, WhatCannotBeHadRunsIntoTheNextRow) {
  host.ipStatistics.failing = {Part::Ip, Part::Icmp, Part::Tables};
  form.Toolbar2.Click("refresh");
  ASSERT_EQ(form.GeneralStats.RowCount(), 20U);
  EXPECT_EQ(RowOf(form.GeneralStats, 0),
            "Unable to retrieve IP StatisticsTCP|timeout algorithm|200|N/A");
  EXPECT_EQ(form.NSview.RowCount(), 0U);
}

TEST_F(NetstatTest, ConnectionsWithPortsOf15BitsAndNamedStates) {
  host.ipStatistics.tcpTable = {{2, {{127, 0, 0, 1}, {4, 1}}, {{0, 0, 0, 0}, {9, 9}}},
                                {5, {{10, 0, 0, 1}, {0x9C, 0x40}}, {{1, 2, 3, 4}, {0x7F, 0xFF}}},
                                {13, {}, {}}};
  host.ipStatistics.udpTable = {{{{0, 0, 0, 0}, {0, 53}}}};
  EXPECT_EQ(Netstat(host.ipStatistics).GetConnectionsText(),
            "TCP\t127.0.0.1:1025\t0.0.0.0:\tLISTEN\r\n"
            "TCP\t10.0.0.1:0\t1.2.3.4:32767\tESTAB\r\n"
            "TCP\t0.0.0.0:0\t0.0.0.0:0\tUNDEFINED\r\n"
            "UDP\t0.0.0.0:53\r\n");
  form.Toolbar2.Click("copy");
  EXPECT_EQ(form.NSview.RowCount(), 0U);
  EXPECT_THAT(program.tallowin.MainForm().Status.Text(),
              HasSubstr("TCP  10.0.0.1:0      1.2.3.4:32767  ESTAB\r\n"));
  EXPECT_THAT(program.tallowin.MainForm().Status.Text(),
              HasSubstr("\r\nAll   datagrams for which all frags didn't arrive  113  N/A\r\n"));
}

TEST_F(NetstatTest, StatesHaveTheirNames) {
  for (std::uint32_t state = 1; state <= 12; ++state) {
    host.ipStatistics.tcpTable.push_back({state, {}, {}});
  }
  form.Toolbar2.Click("refresh");
  std::string names;
  for (std::size_t row = 0; row < form.NSview.RowCount(); ++row) {
    names += form.NSview.Text(row, 3) + " ";
  }
  EXPECT_EQ(names,
            "CLOSED LISTEN SYN_SENT SYN_RCVD ESTAB FIN_WAIT1 FIN_WAIT2 CLOSE_WAIT CLOSING LAST_ACK "
            "TIME_WAIT DELETE_TCB ");
}

TEST_F(NetstatTest, TheTableHolds101Rows) {
  host.ipStatistics.tcpTable.assign(101, TcpRow{});
  host.ipStatistics.udpTable.assign(101, {});
  form.Toolbar2.Click("refresh");
  EXPECT_EQ(form.NSview.RowCount(), 202U);
  EXPECT_TRUE(program.questions.asked.empty());
  // Of more than the table holds, what is missing is told once; the guard goes on.
  host.ipStatistics.udpTable.push_back({});
  host.loop.Deliver([&] { form.Toolbar2.Click("refresh"); });
  EXPECT_EQ(form.NSview.RowCount(), 202U);
  ASSERT_EQ(program.questions.asked.size(), 1U);
  EXPECT_EQ(program.questions.asked[0].title, "Internet Statistics");
  EXPECT_THAT(program.questions.asked[0].text, HasSubstr("more: further UDP listeners are"));
  host.ipStatistics.tcpTable.push_back({});
  EXPECT_EQ(test::ErrorOf([&] { (void)Netstat(host.ipStatistics).GetConnectionsText(); }), 9);
  host.loop.Deliver([&] { form.Toolbar2.Click("refresh"); });
  EXPECT_EQ(form.NSview.RowCount(), 101U);
  EXPECT_EQ(program.questions.asked.size(), 1U);
  host.loop.Deliver([&] { form.Toolbar2.Click("copy"); });
  EXPECT_THAT(program.questions.asked.back().text, HasSubstr("and all UDP listeners, are"));
  EXPECT_FALSE(host.loop.Ended());
}

}  // namespace
}  // namespace tallowin::analysis
