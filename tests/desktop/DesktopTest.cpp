#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>
#include <QWindow>
#include <utility>

#include "desktop/AnswerGuard.h"
#include "desktop/ChatWindowView.h"
#include "desktop/DesktopQuestions.h"
#include "desktop/MainWindow.h"
#include "desktop/QtLoop.h"
#include "desktop/Text.h"
#include "desktop/TextView.h"

namespace tallowin::desktop {
namespace {

using namespace std::string_literals;
using forms::Answer;
using forms::MessageBoxStyle;
using forms::WindowState;

constexpr const char* kMarkup = "<img src=http://127.0.0.1:9/x>";

void Press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = {},
           const QString& text = {}) {
  QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
  QApplication::sendEvent(&widget, &press);
  QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
  QApplication::sendEvent(&widget, &release);
}

void Type(QWidget& widget, const QString& text) {
  for (const QChar c : text) Press(widget, 0, {}, c);
}

::testing::AssertionResult Becomes(const std::function<bool()>& condition) {
  QElapsedTimer waited;
  waited.start();
  while (!condition()) {
    if (waited.hasExpired(10000)) return ::testing::AssertionFailure() << "never came about";
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  }
  return ::testing::AssertionSuccess();
}

class MainWindowTest : public ::testing::Test {
 protected:
  MainWindowTest() {
    form.Status.OnChange = [this] { form.Status.SetSelStart(form.Status.Text().size()); };
    form.SetVisible(true);
  }
  TextView& View() { return *dynamic_cast<TextView*>(window.findChild<QWidget*>("Status")); }
  QComboBox& Callers() { return *window.findChild<QComboBox*>("LoggedIPs"); }
  QAction& Item(const char* name) { return *window.findChild<QAction*>(name); }
  /// Shown lines are counted with the empty one behind the last line end.
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
  EXPECT_EQ(Item("clearlog").text(), "&Clear Log");
  EXPECT_TRUE(Item("ServiceSep").isSeparator());
  EXPECT_TRUE(Item("portsntmnu").isChecked());
  EXPECT_TRUE(Item("ActiveMonMnu").isChecked());

  // The handler alone decides on the tick.
  Item("identmnu").trigger();
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(loop.delivered, 1);
  EXPECT_FALSE(Item("identmnu").isChecked());
  form.identmnu.SetChecked(true);
  EXPECT_TRUE(Item("identmnu").isChecked());
  form.identmnu.SetEnabled(false);
  EXPECT_FALSE(Item("identmnu").isEnabled());
  form.identmnu.SetCaption("Ident&X");
  EXPECT_EQ(Item("identmnu").text(), "Ident&X");

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

TEST_F(MainWindowTest, StatusIsSelectedAndCopied) {
  const std::string tail(2 * RowIndex::MaxRowBytes, 'z');
  form.Status.AppendText("first\x1b\r\nsecond " + tail + "\r\n");
  ASSERT_TRUE(Becomes([&] { return View().RowCount() == 5; }));
  Press(View(), Qt::Key_A, Qt::ControlModifier);
  Press(View(), Qt::Key_C, Qt::ControlModifier);
  const QString all = "first\\x1b\nsecond " + QString::fromStdString(tail) + "\n";
  EXPECT_EQ(QGuiApplication::clipboard()->text(), all);

  Press(View(), Qt::Key_Home, Qt::ControlModifier);
  Press(View(), Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(View().SelectedText(), "first\\x1b");
  Press(View(), Qt::Key_Right, Qt::ShiftModifier);
  Press(View(), Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(View().SelectedText(), "first\\x1b\nsecond ");

  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&View());
  ASSERT_NE(accessible->textInterface(), nullptr);
  EXPECT_TRUE(accessible->textInterface()->text(0, 5) == "first");
  EXPECT_EQ(accessible->text(QAccessible::Name), "Main Status");
  EXPECT_TRUE(accessible->state().readOnly);
}

TEST_F(MainWindowTest, DoubleClickTakesAnAddress) {
  form.Status.AppendText("from 192.0.2.7: ping\r\n");
  ASSERT_TRUE(Becomes([&] { return View().RowCount() == 2; }));
  const QFontMetrics metrics = View().fontMetrics();
  const QPointF point(metrics.horizontalAdvance("from 19"), metrics.height() / 2.0 + 4);
  QMouseEvent click(QEvent::MouseButtonDblClick, point, View().viewport()->mapToGlobal(point),
                    Qt::LeftButton, Qt::LeftButton, {});
  QApplication::sendEvent(View().viewport(), &click);
  EXPECT_EQ(View().SelectedText(), "192.0.2.7");
}

TEST_F(MainWindowTest, CallersAreListedAndTypedOver) {
  QLineEdit& edit = *Callers().lineEdit();
  EXPECT_EQ(edit.text(), "IP Addresses...");
  form.LoggedIPs.AddItem("192.0.2.1");
  EXPECT_EQ(edit.text(), "IP Addresses...");
  form.LoggedIPs.AddItem("192.0.2.2");
  form.LoggedIPs.SetText("192.0.2.2");
  EXPECT_EQ(edit.text(), "192.0.2.2");
  EXPECT_EQ(Callers().itemText(1), "192.0.2.2");

  int picked = 0;
  form.LoggedIPs.OnClick = [&] { ++picked; };
  Press(Callers(), Qt::Key_Home);
  Press(Callers(), Qt::Key_Up);
  Q_EMIT Callers().activated(0);
  EXPECT_EQ(form.LoggedIPs.Text(), "192.0.2.1");
  EXPECT_GE(picked, 1);

  edit.selectAll();
  Type(edit, "192.0.2.2x");
  Press(edit, Qt::Key_Return);
  EXPECT_EQ(form.LoggedIPs.Text(), "192.0.2.2x");
  EXPECT_EQ(Callers().count(), 2);
  form.LoggedIPs.Clear();
  EXPECT_EQ(Callers().count(), 0);
  EXPECT_EQ(edit.text(), "192.0.2.2x");
}

TEST_F(MainWindowTest, ToolsArePressedByMouseAndKeyboardWhileTheBarIsEnabled) {
  std::string pressed;
  form.Toolbar1.OnButtonClick = [&](const forms::ToolBarButton& button) {
    pressed += button.Key + " ";
  };
  auto& whois = *window.findChild<QToolButton*>("whois");
  EXPECT_EQ(whois.text(), "Whois");
  EXPECT_FALSE(whois.toolTip().isEmpty());
  whois.click();
  Press(*window.findChild<QToolButton*>("dnslookup"), Qt::Key_Space);
  EXPECT_EQ(pressed, "whois dnslookup ");
  EXPECT_EQ(loop.delivered, 2);

  form.Toolbar1.SetEnabled(false);
  form.LoggedIPs.SetEnabled(false);
  EXPECT_FALSE(whois.isEnabled());
  EXPECT_FALSE(Callers().isEnabled());
  whois.click();
  EXPECT_EQ(loop.delivered, 2);
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
    if (form.State() == WindowState::Minimised) form.Hide();
  };
  form.OnCloseBox = [this] { form.SetState(WindowState::Minimised); };
  EXPECT_FALSE(window.isMinimized());
  window.close();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.isMinimized());
  EXPECT_FALSE(form.Visible());

  window.showNormal();  // as the task list does
  EXPECT_TRUE(form.Visible());
  EXPECT_EQ(form.State(), WindowState::Normal);
  window.showMinimized();
  EXPECT_FALSE(form.Visible());
  EXPECT_TRUE(window.isVisible());

  form.SetState(WindowState::Normal);
  form.Show();
  EXPECT_FALSE(window.isMinimized());
  form.SetTopMost(true);
  EXPECT_TRUE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  form.SetTopMost(false);
  EXPECT_FALSE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
}

TEST(ChatWindowViewTest, EnterSendsAndTheTitleBarOnlyHides) {
  QtLoop loop;
  portsentry::ChatWindow form;
  ChatWindowView window(form, loop);
  EXPECT_FALSE(window.isVisible());
  form.Show();
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.windowTitle(), "Chat With Hacker");

  std::string sent;
  form.SendButton.OnClick = [&] {
    sent += form.SendBox.Text() + "|";
    form.SendBox.SetText("");
    form.SendBox.SetFocus();
  };
  auto& line = *window.findChild<QLineEdit*>("SendBox");
  window.findChild<QPushButton*>("SendButton")->setFocus();
  Type(line, "hello");
  Press(line, Qt::Key_Return);
  EXPECT_EQ(sent, "hello|");
  EXPECT_EQ(line.text(), "");
  EXPECT_EQ(window.focusWidget(), &line);

  window.close();
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(form.Visible());
}

bool TakesKeys(const QMessageBox& box) {
  const auto* guard = static_cast<AnswerGuard*>(box.findChild<QObject*>("AnswerGuard"));
  return guard != nullptr && guard->Armed();
}

/// Presses `key` in the next box, as soon as it takes keys.
Answer AnswerTo(int key, MessageBoxStyle style, const std::string& text = "Really?") {
  QtLoop loop;
  DesktopQuestions questions(loop);
  std::function<void()> answer = [&] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || box->focusWidget() == nullptr) return QTimer::singleShot(1, answer);
    if (!TakesKeys(*box)) return QTimer::singleShot(10, answer);
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(box->text().toStdString(), text);
    EXPECT_TRUE(box->textInteractionFlags() & Qt::TextSelectableByMouse);
    Press(*box->focusWidget(), key);
  };
  QTimer::singleShot(0, answer);
  return questions.MsgBox(text, style, "Title");
}

TEST(DesktopQuestionsTest, KeyboardChoosesTheHarmlessAnswer) {
  EXPECT_EQ(AnswerTo(Qt::Key_Escape, MessageBoxStyle::YesNoQuestion), Answer::No);
  EXPECT_EQ(AnswerTo(Qt::Key_Return, MessageBoxStyle::YesNoInformation), Answer::No);
  EXPECT_EQ(AnswerTo(Qt::Key_Escape, MessageBoxStyle::Plain, kMarkup), Answer::Ok);
  EXPECT_EQ(AnswerTo(Qt::Key_Return, MessageBoxStyle::Stop), Answer::Ok);
}

TEST(DesktopQuestionsTest, WhatWasMeantForSomethingElseAnswersNothing) {
  QtLoop loop;
  DesktopQuestions questions(loop);
  bool pressedEarly = false;
  std::function<void()> press = [&] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible()) return QTimer::singleShot(1, press);
    QAbstractButton& yes = *box->button(QMessageBox::Yes);
    yes.setFocus();
    if (!std::exchange(pressedEarly, true)) {
      Press(yes, Qt::Key_Space);
      Press(yes, Qt::Key_Return);
      Press(yes, Qt::Key_Escape);
      Press(*box, Qt::Key_Y, {}, "y");
      EXPECT_FALSE(TakesKeys(*box));
    }
    EXPECT_TRUE(box->isVisible());
    if (!TakesKeys(*box)) return QTimer::singleShot(10, press);
    Press(*box, Qt::Key_Y, {}, "y");
    EXPECT_TRUE(box->isVisible()) << "a letter presses no button";
    Press(yes, Qt::Key_Space);
  };
  QTimer::singleShot(0, press);
  EXPECT_EQ(questions.MsgBox("Really?", MessageBoxStyle::YesNoInformation, "Title"), Answer::Yes);
}

TEST(DesktopQuestionsTest, ALongTextStaysOnTheScreenAndIsPlain) {
  const std::string text =
      "Head\n" + std::string(5000, 'x') + "\n" + kMarkup + "\n" + std::string(3000, '\n') + "End";
  QtLoop loop;
  DesktopQuestions questions(loop);
  std::function<void()> look = [&] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible()) return QTimer::singleShot(1, look);
    const auto* view = box->findChild<QTextEdit*>("MsgBoxText");
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->toPlainText().toStdString(), text);
    EXPECT_TRUE(view->textInteractionFlags() & Qt::TextSelectableByMouse);
    EXPECT_EQ(view->horizontalScrollBar()->maximum(), 0) << "long words are broken";
    EXPECT_TRUE(box->rect().contains(view->geometry()));
    const QSize screen = box->screen()->availableSize();
    EXPECT_EQ(box->size().boundedTo(screen), box->size());
    EXPECT_EQ(box->focusWidget(), box->button(QMessageBox::No));
    box->close();
  };
  QTimer::singleShot(0, look);
  EXPECT_EQ(questions.MsgBox(text, MessageBoxStyle::YesNoInformation, "Title"), Answer::No);
}

TEST(DesktopQuestionsTest, YesIsYesAndTheEndOfTheProgramEndsTheBox) {
  QtLoop loop;
  DesktopQuestions questions(loop);
  QTimer::singleShot(0, [] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    box->button(QMessageBox::Yes)->click();
  });
  EXPECT_EQ(questions.MsgBox("Really?", MessageBoxStyle::YesNoQuestion, "Title"), Answer::Yes);

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
