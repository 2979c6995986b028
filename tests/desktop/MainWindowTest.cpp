#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>
#include <QWindow>
#include <string>
#include <utility>
#include <vector>

#include "desktop/AnswerGuard.h"
#include "desktop/DesktopQuestions.h"
#include "desktop/MainWindow.h"
#include "desktop/QtLoop.h"
#include "desktop/RowIndex.h"
#include "desktop/Text.h"
#include "desktop/TextView.h"

namespace tallowin::desktop {
namespace {

using namespace std::string_literals;
using forms::Answer;
using forms::MessageBoxStyle;
using ::testing::ElementsAre;

std::vector<std::string> Rows(const RowIndex& index, const std::string& text) {
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < index.Count(); ++row) {
    rows.emplace_back(index.Row(text, row));
  }
  return rows;
}

TEST(RowIndexTest, KnowsAllLineEndsHoweverTheTextArrives) {
  const std::string text = "a\r\nb\nc\rd\r\r\n\ne\r\n";
  RowIndex atOnce;
  atOnce.ExtendTo(text);
  EXPECT_THAT(Rows(atOnce, text), ElementsAre("a", "b", "c", "d", "", "", "e", ""));

  RowIndex byteByByte;
  for (std::size_t size = 0; size <= text.size(); ++size) {
    byteByByte.ExtendTo(std::string_view(text).substr(0, size));
  }
  EXPECT_EQ(Rows(byteByByte, text), Rows(atOnce, text));
}

TEST(RowIndexTest, CutsLongLinesBetweenCharacters) {
  const std::string full(RowIndex::MaxRowBytes, 'x');
  const std::string split = std::string(RowIndex::MaxRowBytes - 1, 'y') + "\xc3\xa9";
  const std::string noise(RowIndex::MaxRowBytes + 1, '\x80');
  const std::string text = full + "\r\n" + split + "\n" + noise;
  RowIndex index;
  index.ExtendTo(text);
  const std::string fullOfNoise = noise.substr(1);
  EXPECT_THAT(Rows(index, text), ElementsAre(full, split.substr(0, RowIndex::MaxRowBytes - 1),
                                             "\xc3\xa9", fullOfNoise, "\x80"));
  EXPECT_TRUE(index.HasLineEnd(text, 0));
  EXPECT_FALSE(index.HasLineEnd(text, 1));
  EXPECT_EQ(index.RowAt(0), 0U);
  EXPECT_EQ(index.RowAt(full.size() + 2), 1U);
  EXPECT_EQ(index.RowAt(text.size()), 4U);
}

constexpr const char* kMarkup = "<img src=http://127.0.0.1:9/x>";

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    form.Status.OnChange = [this] { form.Status.SetSelStart(form.Status.Text().size()); };
    form.SetVisible(true);
  }
  TextView& View() { return *dynamic_cast<TextView*>(window.findChild<QWidget*>("Status")); }
  QComboBox& Callers() { return *window.findChild<QComboBox*>("LoggedIPs"); }
  QAction& Item(const char* name) { return *window.findChild<QAction*>(name); }
  void AddLines(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
      form.Status.AppendText("line " + std::to_string(i) + "\r\n");
    const std::size_t rows = View().RowCount() + count;
    ASSERT_TRUE(Becomes([&] { return View().RowCount() == rows; }));
  }
  bool AtEnd() {
    const QScrollBar* bar = View().verticalScrollBar();
    return bar->value() == bar->maximum();
  }

  QtLoop loop;
  core::MainForm form;
  MainWindow window{form, loop};
};

TEST_F(MainWindowTest, MenuMirrorsItems) {
  int clicks = 0;
  form.identmnu.OnClick = [&] { ++clicks; };
  // The handler alone decides on the tick.
  Item("identmnu").trigger();
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(loop.delivered, 1);
  EXPECT_FALSE(Item("identmnu").isChecked());
  form.identmnu.SetChecked(true);
  EXPECT_TRUE(Item("identmnu").isChecked());
  form.identmnu.SetEnabled(false);
  EXPECT_FALSE(Item("identmnu").isEnabled());

  QAction* services = window.findChild<QMenu*>("protmnu")->menuAction();
  EXPECT_TRUE(services->isVisible());
  for (forms::Control* control : form.Controls()) {
    if (control->Container() == &form.protmnu) control->SetVisible(false);
  }
  EXPECT_FALSE(services->isVisible());
}

TEST_F(MainWindowTest, ForeignTextIsPlain) {
  form.Status.AppendText(kMarkup + "\x1b[2J\xff\0end\r\n"s);
  form.LoggedIPs.SetToolTip(kMarkup);
  const QString shown = QString(kMarkup) + "\\x1b[2J\\xff\\x00end\n";
  ASSERT_TRUE(Becomes([&] { return View().VisibleText().startsWith(shown); }));
  EXPECT_FALSE(Callers().toolTip().contains("<img"));
  EXPECT_TRUE(Callers().toolTip().contains("&lt;img"));
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
  }
  EXPECT_EQ(ToWindowTitle("a[*]"), "a[*][*]");
}

TEST_F(MainWindowTest, StatusFollowsItsEndUnlessTheUserReads) {
  AddLines(300);
  EXPECT_TRUE(AtEnd());
  EXPECT_TRUE(View().VisibleText().contains("line 299"));

  View().verticalScrollBar()->setValue(100);
  AddLines(50);
  EXPECT_EQ(View().verticalScrollBar()->value(), 100);

  View().verticalScrollBar()->setValue(View().verticalScrollBar()->maximum());
  AddLines(50);
  EXPECT_TRUE(AtEnd());

  View().SelectAll();
  const int place = View().verticalScrollBar()->value();
  AddLines(50);
  EXPECT_EQ(View().verticalScrollBar()->value(), place);

  form.Status.SetText("fresh\r\n");
  ASSERT_TRUE(Becomes([&] { return View().VisibleText() == "fresh\n\n"; }));
}

TEST_F(MainWindowTest, TheKeyboardIsBackAtTheToolWhenItIsDoneUnlessTheUserHasTakenIt) {
  auto& ping = *window.findChild<QToolButton*>("ping");
  for (const bool taken : {false, true}) {
    ping.setFocus();
    form.Toolbar1.SetEnabled(false);
    EXPECT_EQ(window.focusWidget(), nullptr);
    if (taken) Callers().setFocus();
    form.Toolbar1.SetEnabled(true);
    EXPECT_EQ(window.focusWidget(), taken ? &Callers() : static_cast<QWidget*>(&ping));
  }
}

TEST_F(MainWindowTest, WaitsMinimisedInsteadOfHidden) {
  form.OnResize = [this] {
    if (form.State() == forms::WindowState::Minimised) form.Hide();
  };
  form.OnCloseBox = [this] { form.SetState(forms::WindowState::Minimised); };
  window.close();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.isMinimized());
  EXPECT_FALSE(form.Visible());

  window.showNormal();  // as the task list does
  EXPECT_TRUE(form.Visible());
  EXPECT_EQ(form.State(), forms::WindowState::Normal);
  window.showMinimized();
  EXPECT_FALSE(form.Visible());
  EXPECT_TRUE(window.isVisible());

  form.SetState(forms::WindowState::Normal);
  form.Show();
  EXPECT_FALSE(window.isMinimized());
  for (const bool onTop : {true, false}) {
    form.SetTopMost(onTop);
    EXPECT_EQ(window.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint), onTop);
  }
}

bool TakesKeys(const QMessageBox& box) {
  const auto* guard = static_cast<AnswerGuard*>(box.findChild<QObject*>("AnswerGuard"));
  return guard != nullptr && guard->Armed();
}

/// The answer of a box that `act` is given again and again until it gives true.
Answer AnswerBy(const std::function<bool(QMessageBox&)>& act, MessageBoxStyle style,
                const std::string& text = "Really?") {
  QtLoop loop;
  DesktopQuestions questions(loop);
  std::function<void()> look = [&] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible() || !act(*box)) QTimer::singleShot(2, look);
  };
  QTimer::singleShot(0, look);
  return questions.MsgBox(text, style, "Title");
}

Answer AnswerTo(int key, MessageBoxStyle style, const std::string& text = "Really?") {
  const auto press = [&](QMessageBox& box) {
    if (!TakesKeys(box) || box.focusWidget() == nullptr) return false;
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.text().toStdString(), text);
    Press(*box.focusWidget(), key);
    return true;
  };
  return AnswerBy(press, style, text);
}

TEST(DesktopQuestionsTest, KeyboardChoosesTheHarmlessAnswer) {
  EXPECT_EQ(AnswerTo(Qt::Key_Escape, MessageBoxStyle::YesNoQuestion), Answer::No);
  EXPECT_EQ(AnswerTo(Qt::Key_Return, MessageBoxStyle::YesNoInformation), Answer::No);
  EXPECT_EQ(AnswerTo(Qt::Key_Escape, MessageBoxStyle::Plain, kMarkup), Answer::Ok);
}

TEST(DesktopQuestionsTest, WhatWasMeantForSomethingElseAnswersNothing) {
  bool pressedEarly = false;
  const auto press = [&](QMessageBox& box) {
    QAbstractButton& yes = *box.button(QMessageBox::Yes);
    yes.setFocus();
    if (!std::exchange(pressedEarly, true)) {
      QEvent given(QEvent::WindowActivate);  // It begins to wait anew, however late this is.
      QCoreApplication::sendEvent(&box, &given);
      for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape}) Press(yes, key);
      EXPECT_FALSE(TakesKeys(box));
    }
    EXPECT_TRUE(box.isVisible());
    if (!TakesKeys(box)) return false;
    Press(box, Qt::Key_Y, {}, "y");
    EXPECT_TRUE(box.isVisible()) << "a letter presses no button";
    Press(yes, Qt::Key_Space);
    return true;
  };
  EXPECT_EQ(AnswerBy(press, MessageBoxStyle::YesNoInformation), Answer::Yes);
}

TEST(DesktopQuestionsTest, ALongTextStaysOnTheScreenAndIsPlain) {
  const std::string text =
      "Head\n" + std::string(5000, 'x') + "\n" + kMarkup + "\n" + std::string(3000, '\n') + "End";
  const auto look = [&](QMessageBox& box) {
    const auto* view = box.findChild<QTextEdit*>("MsgBoxText");
    EXPECT_EQ(view->toPlainText().toStdString(), text);
    EXPECT_EQ(view->horizontalScrollBar()->maximum(), 0) << "long words are broken";
    EXPECT_TRUE(box.rect().contains(view->geometry()));
    EXPECT_EQ(box.size().boundedTo(box.screen()->availableSize()), box.size());
    box.close();
    return true;
  };
  EXPECT_EQ(AnswerBy(look, MessageBoxStyle::YesNoInformation, text), Answer::No);
}

TEST(DesktopQuestionsTest, TheEndOfTheProgramEndsTheBox) {
  QtLoop loop;
  DesktopQuestions questions(loop);
  loop.Post([&] { loop.End(0); });
  EXPECT_THROW(questions.MsgBox("Really?", MessageBoxStyle::YesNoQuestion, "Title"),
               platform::ProgramEnded);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
}  // namespace tallowin::desktop

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleMock(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
