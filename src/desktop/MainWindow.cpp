#include "desktop/MainWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMenuBar>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/TextView.h"
#include "desktop/ToolBarView.h"

namespace tallowin::desktop {

namespace {

constexpr QSize kMainSize{900, 520};
// An address at least; a wider window shows more of a long name. Together with the buttons and
// their icons it stays below the width above.
constexpr int kAddressColumns = 24;
constexpr int kLogoSize = 48;

constexpr MenuLook kLooks[] = {
    {.item = "portsntmnu", .isSwitch = true},
    {.item = "ActiveMonMnu", .isSwitch = true},
    {.item = "identmnu", .isSwitch = true},
    {.item = "timesyncmnu", .isSwitch = true},
    {.item = "hlpmnu", .icon = "help-contents"},
    {.item = "aboutmnu", .icon = "help-about"},
    {.item = "clearlog", .icon = "edit-clear"},
    {.item = "savelog", .icon = "document-save"},
    {.item = "Removelogs", .icon = "edit-delete"},
    {.item = "exittwmnu", .icon = "application-exit"},
};

constexpr ToolLook kTools[] = {
    {.key = "whois",
     .icon = "system-users",
     .toolTip = "Ask the address registries whose network this is"},
    {.key = "traceroute", .icon = "network-wired", .toolTip = "List the routers on the way there"},
    {.key = "ping",
     .icon = "network-transmit-receive",
     .toolTip = "Measure how long one echo takes"},
    {.key = "dnslookup",
     .icon = "edit-find",
     .toolTip = "Find the name of an address, or the address of a name"},
};

QWidget* MakeLogo(QWidget* parent) {
  auto* logo = new QLabel(parent);
  logo->setObjectName("logo");
  logo->setAccessibleName("Tallowin");
  logo->setTextFormat(Qt::PlainText);
  logo->setPixmap(QApplication::windowIcon().pixmap(kLogoSize));
  return logo;
}

}  // namespace

std::span<const MenuLook> MainMenuLooks() { return kLooks; }

MainWindow::MainWindow(core::MainForm& form, platform::EventLoop& loop, bool hiddenWaitsInTaskList)
    : FormWindow(form, loop, hiddenWaitsInTaskList ? WhenHidden::WaitMinimised : WhenHidden::Hide,
                 WhenShown::TakeKeyboard),
      menus_(Bindings(), form, kLooks) {
  menus_.Fill(*menuBar());
  auto* content = new QWidget(this);
  auto* label = new QLabel(content);
  auto* status = new TextView(form.Status.Text(), content);
  auto* layout = new QVBoxLayout(content);
  layout->addWidget(label);
  layout->addWidget(status, 1);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(MakeTools(form, content), 1);
  bottom->addWidget(MakeLogo(content));
  layout->addLayout(bottom);
  Bindings().Bind(form.Status, *status);
  Bindings().Bind(form.StatusLabel, *label, *status);
  setCentralWidget(content);
  status->setFocus();
  ResizeWithinScreen({kMainSize.width(), std::max(kMainSize.height(), HeightOfForm())});
  Follow();
}

void MainWindow::SetHiddenWaitsInTaskList(bool waits) {
  SetWhenHidden(waits ? WhenHidden::WaitMinimised : WhenHidden::Hide);
}

QWidget* MainWindow::MakeTools(core::MainForm& form, QWidget* parent) {
  auto* tools = new QGroupBox(parent);
  auto* label = new QLabel(tools);
  auto* callers = new QComboBox(tools);
  callers->setEditable(true);
  callers->setMinimumContentsLength(kAddressColumns);
  auto* bar = new ToolBarView(form.Toolbar1, Bindings(), kTools, tools);
  auto* layout = new QHBoxLayout(tools);
  layout->addWidget(label);
  layout->addWidget(callers, 1);
  layout->addWidget(bar);
  Bindings().Bind(form.Frame3, *tools);
  Bindings().Bind(form.Toolbar1, *bar);
  Bindings().Bind(form.LoggedIPs, *callers);
  Bindings().Bind(form.Label1, *label, *callers);
  return tools;
}

}  // namespace tallowin::desktop
