#include "desktop/NetstatWindow.h"

#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "desktop/TableView.h"
#include "desktop/ToolBarView.h"

namespace tallowin::desktop {

namespace {

constexpr QSize kNetstatSize{760, 640};
constexpr int kValueColumn = 2;

constexpr ToolLook kNetstatTools[] = {
    {.key = "refresh",
     .icon = "view-refresh",
     .toolTip = "Read the counters and the connections anew (F5)"},
    {.key = "copy",
     .icon = "edit-copy",
     .toolTip = "Write what holds now to the status log of the main window"},
};

}  // namespace

NetstatWindow::NetstatWindow(analysis::Netstatfrm& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard) {
  auto* content = new QWidget(this);
  auto* bar = new ToolBarView(form.Toolbar2, Bindings(), kNetstatTools, content);
  Bindings().Bind(form.Toolbar2, *bar);
  auto* layout = new QVBoxLayout(content);
  layout->addWidget(bar, 0, Qt::AlignLeft);
  layout->addWidget(MakeTables(form, content), 1);
  setCentralWidget(content);
  auto* refresh = new QShortcut(QKeySequence::Refresh, this);
  connect(refresh, &QShortcut::activated, this,
          [this, &form] { Bindings().Deliver([&form] { form.Toolbar2.Click("refresh"); }); });
  ResizeWithinScreen(kNetstatSize);
  Follow();
}

QWidget* NetstatWindow::MakeTables(analysis::Netstatfrm& form, QWidget* parent) {
  auto* splitter = new QSplitter(Qt::Vertical, parent);
  auto* connections = new TableView(form.NSview, Bindings(), splitter);
  auto* counters = new TableView(form.GeneralStats, Bindings(), splitter);
  connections->setAccessibleName(tr("Connections"));
  counters->setAccessibleName(tr("Counters"));
  counters->AlignRight(kValueColumn);
  Bindings().Bind(form.NSview, *connections);
  Bindings().Bind(form.GeneralStats, *counters);
  splitter->setChildrenCollapsible(false);
  return splitter;
}

}  // namespace tallowin::desktop
