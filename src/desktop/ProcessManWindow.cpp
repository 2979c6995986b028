#include "desktop/ProcessManWindow.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "desktop/TableView.h"
#include "desktop/ToolBarView.h"

namespace tallowin::desktop {

namespace {

constexpr QSize kProcessManSize{900, 680};
constexpr int kNumberColumn = 1;
constexpr int kSharesOfProcesses = 2;

constexpr ToolLook kProcessTools[] = {
    {.key = "refresh", .icon = "view-refresh", .toolTip = "List what runs now (F5)"},
    {.key = "scan",
     .icon = "edit-find",
     .toolTip = "Rate the program file of the selected process"},
    {.key = "terminate",
     .icon = "process-stop",
     .toolTip = "End the selected process at once; what it has not saved is lost"},
    {.key = "terminateanddel",
     .icon = "edit-delete",
     .toolTip = "End the selected process and delete its program file"},
    {.key = "copy",
     .icon = "edit-copy",
     .toolTip = "Write the lists to the status log of the main window"},
};

}  // namespace

ProcessManWindow::ProcessManWindow(analysis::ProcessManFrm& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard) {
  auto* content = new QWidget(this);
  auto* bar = new ToolBarView(form.Toolbar1, Bindings(), kProcessTools, content);
  Bindings().Bind(form.Toolbar1, *bar);
  auto* layout = new QVBoxLayout(content);
  layout->addWidget(bar, 0, Qt::AlignLeft);
  layout->addWidget(MakeTables(form, content), 1);
  layout->addWidget(MakeTicks(form, content));
  setCentralWidget(content);
  auto* refresh = new QShortcut(QKeySequence::Refresh, this);
  connect(refresh, &QShortcut::activated, this,
          [this, &form] { Bindings().Deliver([&form] { form.Toolbar1.Click("refresh"); }); });
  findChild<TableView*>("ProcView1")->setFocus();
  ResizeWithinScreen(kProcessManSize);
  Follow();
}

QWidget* ProcessManWindow::MakeTables(analysis::ProcessManFrm& form, QWidget* parent) {
  auto* splitter = new QSplitter(Qt::Vertical, parent);
  splitter->addWidget(MakeTable(form.Frame1, form.ProcView1, splitter));
  splitter->addWidget(MakeTable(form.Frame2, form.ThreadsView1, splitter));
  splitter->setStretchFactor(0, kSharesOfProcesses);
  splitter->setStretchFactor(1, 1);
  splitter->setChildrenCollapsible(false);
  return splitter;
}

QWidget* ProcessManWindow::MakeTable(forms::Frame& frame, forms::ListView& list, QWidget* parent) {
  auto* group = new QGroupBox(parent);
  auto* table = new TableView(list, Bindings(), group);
  table->AlignRight(kNumberColumn);
  table->setAccessibleName(QString::fromStdString(frame.Caption()));
  (new QVBoxLayout(group))->addWidget(table);
  Bindings().Bind(frame, *group);
  Bindings().Bind(list, *table);
  return group;
}

QWidget* ProcessManWindow::MakeTicks(analysis::ProcessManFrm& form, QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  for (auto* control : {&form.ChkScanProcs, &form.ChkScanThreads}) {
    auto* box = new QCheckBox(row);
    Bindings().Bind(*control, *box);
    layout->addWidget(box);
  }
  layout->addStretch(1);
  return row;
}

}  // namespace tallowin::desktop
