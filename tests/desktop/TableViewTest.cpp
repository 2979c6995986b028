#include "desktop/TableView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QToolTip>
#include <QWindow>

#include "desktop/FormWindow.h"
#include "desktop/QtLoop.h"

namespace tallowin::desktop {
namespace {

using ::testing::ElementsAre;

struct TableForm : forms::Form {
  TableForm() : Form("TableForm") {}
  forms::ListView List{*this, "List", {"Name", "PID", "Rest"}};

  void AddRow(const std::string& name, const std::string& id, const std::string& rest = {}) {
    const std::size_t row = List.AddItem(name);
    List.SetSubItem(row, 1, id);
    List.SetSubItem(row, 2, rest);
  }
};

struct TableWindow : FormWindow {
  TableWindow(TableForm& form, platform::EventLoop& loop)
      : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard),
        view(new TableView(form.List, Bindings(), this)) {
    Bindings().Bind(form.List, *view);
    setCentralWidget(view);
    resize(500, 300);
    Follow();
  }
  TableView* view;
};

class TableViewTest : public ::testing::Test {
 protected:
  TableViewTest() {
    form.List.OnItemClick = [this](std::size_t row) { clicked.push_back(row); };
    form.Show();
  }
  void WaitForRows() {
    const auto all = [this] { return Rows().rowCount() == static_cast<int>(form.List.RowCount()); };
    ASSERT_TRUE(Becomes(all));
  }
  QAbstractItemModel& Rows() { return *window.view->model(); }
  std::vector<std::string> Column(int column) {
    std::vector<std::string> texts;
    for (int row = 0; row < Rows().rowCount(); ++row) {
      texts.push_back(Rows().index(row, column).data().toString().toStdString());
    }
    return texts;
  }
  void ClickHeader(int column) {
    QHeaderView* header = window.view->header();
    Click(*header->viewport(), QPoint(header->sectionViewportPosition(column) + 20, 5));
  }
  void ClickRow(int row) {
    Click(*window.view->viewport(), window.view->visualRect(Rows().index(row, 0)).center());
  }

  QtLoop loop;
  TableForm form;
  TableWindow window{form, loop};
  std::vector<std::size_t> clicked;
};

TEST_F(TableViewTest, TheHeaderSortsForTheEyeOnly) {
  for (const char* id : {"10", "-5", "none", "9"}) form.AddRow("row", id);
  WaitForRows();
  ClickHeader(1);
  EXPECT_THAT(Column(1), ElementsAre("-5", "9", "10", "none"));
  ClickHeader(1);
  EXPECT_THAT(Column(1), ElementsAre("none", "10", "9", "-5"));
  form.AddRow("late", "8");
  WaitForRows();
  EXPECT_THAT(Column(1), ElementsAre("none", "10", "9", "8", "-5"));
  EXPECT_EQ(form.List.Text(4), "late");
  ClickHeader(1);
  EXPECT_THAT(Column(1), ElementsAre("10", "-5", "none", "9", "8"));
}

TEST_F(TableViewTest, RowsOfTheControlAreSelectedByMouseKeyboardAndCode) {
  for (const char* id : {"3", "1", "2"}) form.AddRow(std::string("row ") + id, id);
  WaitForRows();
  ClickHeader(1);
  ClickRow(0);
  ClickRow(0);
  Press(*window.view, Qt::Key_Down);
  EXPECT_THAT(clicked, ElementsAre(1, 1, 2)) << "a second click counts again";
  EXPECT_EQ(loop.delivered, 3);
  form.List.Select(0);
  EXPECT_EQ(window.view->selectionModel()->selectedRows().constFirst().row(), 2);
  EXPECT_EQ(loop.delivered, 3) << "no echo of what code has selected";
  Press(*window.view, Qt::Key_Space, Qt::ControlModifier);
  EXPECT_TRUE(window.view->selectionModel()->hasSelection()) << "no way to unselect";

  form.List.Clear();
  EXPECT_FALSE(window.view->selectionModel()->hasSelection());
  EXPECT_EQ(Rows().rowCount(), 0);
  form.AddRow("selected before the view has heard of it", "1");
  form.List.Select(0);
  EXPECT_TRUE(window.view->selectionModel()->hasSelection());
}

TEST_F(TableViewTest, ForeignTextsAreCopiedAndToldAsPlainText) {
  const std::string markup = "<b>bold</b>\r\n" + std::string(5000, 'x') + "\x1b";
  form.AddRow(markup, "7", "end\tof row");
  WaitForRows();
  EXPECT_LT(window.view->columnWidth(0), window.width());
  form.List.Select(0);
  Press(*window.view, Qt::Key_C, Qt::ControlModifier);
  window.view->actions().constFirst()->trigger();
  const QString copied = QApplication::clipboard()->text();
  EXPECT_TRUE(copied.startsWith("<b>bold</b> xxx"));
  EXPECT_TRUE(copied.endsWith("x\\x1b\t7\tend of row"));

  const QPoint cell = window.view->visualRect(Rows().index(0, 0)).center();
  QHelpEvent help(QEvent::ToolTip, cell, window.view->viewport()->mapToGlobal(cell));
  QApplication::sendEvent(window.view->viewport(), &help);
  EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;")) << QToolTip::text().toStdString();
  QToolTip::hideText();
}

TEST_F(TableViewTest, AModalFormKeepsTheUserFromAllOthersUntilItIsClosed) {
  TableForm modalForm;
  TableWindow modal(modalForm, loop);
  ASSERT_TRUE(Becomes([&] { return window.isActiveWindow(); }));
  bool seen = false;
  QTimer::singleShot(0, [&] {
    seen = true;
    EXPECT_EQ(modal.windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(modal.windowHandle()->transientParent(), window.windowHandle());
    EXPECT_FALSE(modal.windowFlags() & Qt::WindowMinMaxButtonsHint);
    modalForm.SetMousePointer(forms::MousePointer::Hourglass);
    EXPECT_EQ(modal.cursor().shape(), Qt::WaitCursor);
    modalForm.SetMousePointer(forms::MousePointer::Normal);
    EXPECT_NE(modal.cursor().shape(), Qt::WaitCursor);
    Press(modal, Qt::Key_Escape);
  });
  modalForm.ShowModal(loop);
  EXPECT_TRUE(seen);
  EXPECT_FALSE(modal.isVisible());
  modalForm.Show();
  EXPECT_EQ(modal.windowModality(), Qt::NonModal);
}

}  // namespace
}  // namespace tallowin::desktop
