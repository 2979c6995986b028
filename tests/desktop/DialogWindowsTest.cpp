#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>

#include "desktop/AutoUpdateWindow.h"
#include "desktop/OptionsWindow.h"
#include "desktop/QtLoop.h"
#include "desktop/ReportHackerWindow.h"

namespace tallowin::desktop {
namespace {

class OptionsWindowTest : public ::testing::Test {
 protected:
  OptionsWindowTest() {
    form.SSTab1.SetTab(1);
    form.Show();
  }
  template <typename Widget>
  Widget& Find(const char* name) {
    return *window.findChild<Widget*>(name);
  }
  static void PressKey(QWidget& widget, int key, const QString& text = {}) {
    widget.setFocus();
    Press(widget, key, {}, text);
  }

  QtLoop loop;
  core::Options form;
  OptionsWindow window{form, loop};
};

TEST_F(OptionsWindowTest, ComesBackAsLargeAsItWas) {
  const QSize size = window.size();
  form.Hide();
  form.Show();
  EXPECT_EQ(window.size(), size);
}

TEST_F(OptionsWindowTest, EnterIsOKButInTheTextAndOnAnotherButton) {
  int ok = 0;
  int next = 0;
  form.Command1.OnClick = [&] { ++ok; };
  form.Command4[1].OnClick = [&] { ++next; };
  PressKey(Find<QLineEdit>("PortNumTxt"), Qt::Key_Enter);
  PressKey(Find<QComboBox>("ActionCombo"), Qt::Key_Return);
  PressKey(Find<QCheckBox>("SirenChk"), Qt::Key_Return);
  EXPECT_EQ(ok, 3);
  PressKey(Find<QWidget>("Command4(1)"), Qt::Key_Return);
  EXPECT_EQ(next, 1);
  PressKey(Find<QPlainTextEdit>("TextToSend"), Qt::Key_Return, "\r");
  EXPECT_EQ(form.TextToSend.Text(), "\r\n");
  EXPECT_EQ(ok, 3);
}

TEST_F(OptionsWindowTest, ALineBreakIsTypedAsTwoAndHardBlanksStay) {
  form.TextToSend.SetText("a\xc2\xa0\r\n<b>c\n");
  auto& edit = Find<QPlainTextEdit>("TextToSend");
  EXPECT_EQ(edit.toPlainText().count('\n'), 2);
  EXPECT_EQ(form.TextToSend.Text(), "a\xc2\xa0\r\n<b>c\n");
  edit.moveCursor(QTextCursor::StartOfBlock);
  edit.insertPlainText("x");
  EXPECT_EQ(form.TextToSend.Text(), "xa\xc2\xa0\r\n<b>c\r\n");
  EXPECT_EQ(edit.textCursor().position(), 1);
}

constexpr const char* kReportMarkup = "<img src=http://127.0.0.1:9/x>";

class ReportWindowTest : public ::testing::Test {
 protected:
  ReportWindowTest() {
    for (const char* address : {"a@one.test", kReportMarkup, "c@three.test"}) {
      form.emaillist.AddItem(address);
    }
    form.SetVisible(true);
  }
  QListView& List() { return *window.findChild<QListView*>("emaillist"); }
  QPlainTextEdit& Recipients() { return *window.findChild<QPlainTextEdit*>("totxt"); }
  QPointF Row(int row) { return List().visualRect(List().model()->index(row, 0)).center(); }
  void ClickRow(int row) { Click(*List().viewport(), Row(row)); }
  std::vector<int> Chosen() {
    std::vector<int> rows;
    for (int row = 0; row < List().model()->rowCount(); ++row) {
      if (List().selectionModel()->isSelected(List().model()->index(row, 0))) rows.push_back(row);
    }
    return rows;
  }

  QtLoop loop;
  reporting::ReportHacker form;
  ReportHackerWindow window{form, loop};
};

TEST_F(ReportWindowTest, ListAndRecipientsFollowEachOther) {
  ClickRow(2);
  ClickRow(0);
  EXPECT_EQ(form.totxt.Text(), "a@one.test\r\nc@three.test");
  EXPECT_EQ(Recipients().toPlainText(), "a@one.test\nc@three.test");
  ClickRow(2);
  form.emaillist.Select(1);
  EXPECT_THAT(Chosen(), ::testing::ElementsAre(0, 1));
  Recipients().appendPlainText("d@four.test");
  EXPECT_EQ(form.totxt.Text(), std::string("a@one.test\r\n") + kReportMarkup + "\r\nd@four.test");
  List().selectAll();
  EXPECT_TRUE(form.emaillist.Selected(2));
  form.emaillist.Clear();
  form.emaillist.AddItem("new@one.test");
  EXPECT_THAT(Chosen(), ::testing::IsEmpty());
  EXPECT_THAT(form.totxt.Text(), ::testing::HasSubstr("c@three.test")) << "until the next click";
}

TEST_F(ReportWindowTest, ThousandsOfEntriesAreChosenInOneStep) {
  for (int i = 0; i < 10000; ++i) form.emaillist.AddItem("x@test");
  const int before = loop.delivered;
  List().selectAll();
  EXPECT_TRUE(form.emaillist.Selected(0) && form.emaillist.Selected(10002));
  EXPECT_EQ(loop.delivered, before + 1);
  ClickRow(1);
  EXPECT_FALSE(form.emaillist.Selected(1));
  EXPECT_EQ(Chosen().size(), 10002);
}

TEST(AutoUpdateWindowTest, WhatTheServerSaysNeitherStretchesNorStylesTheWindow) {
  QtLoop loop;
  reporting::AutoUpdate form;
  AutoUpdateWindow window(form, loop);
  form.SetVisible(true);
  const QSize smallest = window.minimumSizeHint();
  form.LatestVer.SetCaption(std::string(1 << 20, 'x'));
  form.RlsDateTxt.SetCaption(kReportMarkup);
  form.Text1.SetText(std::string(1 << 20, '\n') + kReportMarkup);
  EXPECT_EQ(window.minimumSizeHint(), smallest);
  const auto* date = window.findChild<QLabel*>("RlsDateTxt");
  EXPECT_EQ(date->textFormat(), Qt::PlainText);
  EXPECT_EQ(date->text(), kReportMarkup);
}

TEST(AutoUpdateWindowTest, ItsButtonHasTheKeyboardAgainBehindACheck) {
  QtLoop loop;
  reporting::AutoUpdate form;
  AutoUpdateWindow window(form, loop);
  form.SetVisible(true);
  form.Command1.SetEnabled(false);
  form.Command1.SetEnabled(true);
  ASSERT_NE(window.focusWidget(), nullptr);
  EXPECT_EQ(window.focusWidget()->objectName(), "Command1");
}

}  // namespace
}  // namespace tallowin::desktop
