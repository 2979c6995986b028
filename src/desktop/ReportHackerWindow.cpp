#include "desktop/ReportHackerWindow.h"

#include <QFont>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace tallowin::desktop {

namespace {

constexpr QSize kReportSize{940, 600};
constexpr int kSpaceInStep = 6;
constexpr int kSpaceBetweenSteps = 12;
constexpr int kSpaceBetweenColumns = 18;

QPlainTextEdit* MakeLines(QWidget* parent) {
  auto* lines = new QPlainTextEdit(parent);
  lines->setMinimumHeight(3 * lines->fontMetrics().lineSpacing());
  return lines;
}

}  // namespace

ReportHackerWindow::ReportHackerWindow(reporting::ReportHacker& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard), report_(form) {
  auto* content = new QWidget(this);
  auto* columns = new QHBoxLayout;
  columns->setSpacing(kSpaceBetweenColumns);
  columns->addLayout(MakeRecipients(content), 2);
  columns->addLayout(MakeMessage(content), 3);
  auto* attached = new QLabel(content);
  auto* send = new QPushButton(content);
  auto* cancel = new QPushButton(content);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(attached, 1);
  buttons->addWidget(send);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(content);
  layout->setSpacing(kSpaceBetweenSteps);
  layout->addLayout(columns, 1);
  layout->addLayout(buttons);
  Bindings().Bind(form.Label14, *attached);
  Bindings().Bind(form.Command1, *send);
  Bindings().Bind(form.Command2, *cancel);
  setCentralWidget(content);
  addresses_->setFocus();
  ResizeWithinScreen(kReportSize);
  Follow();
}

QVBoxLayout* ReportHackerWindow::MakeRecipients(QWidget* parent) {
  addresses_ = new QListView(parent);
  addresses_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  addresses_->viewport()->setMouseTracking(true);
  addresses_->viewport()->installEventFilter(this);
  auto* recipients = MakeLines(parent);
  auto* layout = new QVBoxLayout;
  layout->setSpacing(kSpaceInStep);  // and not that of the columns
  AddStep(*layout, parent, report_.Label1, report_.Label2);
  layout->addWidget(addresses_, 1);
  layout->addSpacing(kSpaceBetweenSteps);
  AddStep(*layout, parent, report_.Label3, report_.Label4);
  layout->addWidget(recipients, 1);
  addresses_->setAccessibleName(tr("Addresses found"));
  recipients->setAccessibleName(tr("Recipients"));
  Bindings().Bind(report_.emaillist, *addresses_);
  Bindings().Bind(report_.totxt, *recipients);
  return layout;
}

QVBoxLayout* ReportHackerWindow::MakeMessage(QWidget* parent) {
  auto* layout = new QVBoxLayout;
  layout->setSpacing(kSpaceInStep);
  AddStep(*layout, parent, report_.Label5, report_.Label6);
  auto* details = new QGridLayout;
  AddField(*details, parent, report_.Label7, report_.fromname);
  AddField(*details, parent, report_.Label8, report_.fromemail);
  layout->addLayout(details);
  layout->addSpacing(kSpaceBetweenSteps);
  AddStep(*layout, parent, report_.Label9, report_.Label10);
  auto* settings = new QGridLayout;
  AddField(*settings, parent, report_.Label11, report_.fromtxt);
  AddField(*settings, parent, report_.Label12, report_.subjecttxt);
  layout->addLayout(settings);
  auto* label = new QLabel(parent);
  auto* message = MakeLines(parent);
  layout->addWidget(label);
  layout->addWidget(message, 1);
  Bindings().Bind(report_.bodytxt, *message);
  Bindings().Bind(report_.Label13, *label, *message);
  // The two groups of fields stand apart and line up all the same.
  const int width = std::max(details->itemAtPosition(0, 0)->sizeHint().width(),
                             std::max(details->itemAtPosition(1, 0)->sizeHint().width(),
                                      settings->itemAtPosition(1, 0)->sizeHint().width()));
  details->setColumnMinimumWidth(0, width);
  settings->setColumnMinimumWidth(0, width);
  return layout;
}

void ReportHackerWindow::AddStep(QVBoxLayout& layout, QWidget* parent, forms::Label& heading,
                                 forms::Label& note) {
  auto* title = new QLabel(parent);
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  auto* text = new QLabel(parent);
  text->setWordWrap(true);
  layout.addWidget(title);
  layout.addWidget(text);
  Bindings().Bind(heading, *title);
  Bindings().Bind(note, *text);
}

void ReportHackerWindow::AddField(QGridLayout& grid, QWidget* parent, forms::Label& label,
                                  forms::TextBox& box) {
  auto* name = new QLabel(parent);
  auto* edit = new QLineEdit(parent);
  const int row = grid.count() / 2;
  grid.addWidget(name, row, 0);
  grid.addWidget(edit, row, 1);
  Bindings().Bind(box, *edit);
  Bindings().Bind(label, *name, *edit);
}

bool ReportHackerWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseMove) {
    MouseOverList(static_cast<QMouseEvent*>(event)->position());
  }
  return FormWindow::eventFilter(watched, event);
}

void ReportHackerWindow::MouseOverList(QPointF place) {
  constexpr double kTwipsPerInch = 1440;
  const double twips = kTwipsPerInch / addresses_->logicalDpiY();
  const QModelIndex top = addresses_->indexAt({0, 0});
  if (!top.isValid()) return;
  // The estimate takes a row for 20 twips a point of the font and 30 more. It is told the size of
  // font that has rows as high as these.
  const double fontSize = (addresses_->visualRect(top).height() * twips - 30) / 20;
  Bindings().Deliver([&] {
    report_.emaillist_MouseMove({.x = place.x() * twips,
                                 .y = place.y() * twips,
                                 .listWidth = addresses_->viewport()->width() * twips,
                                 .listHeight = addresses_->viewport()->height() * twips,
                                 .fontSize = fontSize,
                                 .topIndex = static_cast<std::size_t>(top.row())});
  });
}

}  // namespace tallowin::desktop
