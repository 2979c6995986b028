#include "desktop/OptionsWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpacerItem>
#include <QTabWidget>
#include <QVBoxLayout>
#include <initializer_list>

namespace tallowin::desktop {

namespace {

constexpr int kPictureSize = 64;
constexpr int kFieldColumns = 58;  // of the longest usual text, a description
constexpr int kTextRows = 4;

QCheckBox* MakeTick(forms::CheckBox& control, Binder& binder, QWidget* parent) {
  auto* box = new QCheckBox(parent);
  binder.Bind(control, *box);
  return box;
}

QGroupBox* MakeGroup(forms::Frame& control, Binder& binder, QWidget* parent) {
  auto* group = new QGroupBox(parent);
  binder.Bind(control, *group);
  return group;
}

QLineEdit* MakeField(forms::Label& name, forms::TextBox& control, Binder& binder,
                     QFormLayout& rows) {
  auto* label = new QLabel(rows.parentWidget());
  auto* edit = new QLineEdit(rows.parentWidget());
  binder.Bind(control, *edit);
  binder.Bind(name, *label, *edit);
  rows.addRow(label, edit);
  return edit;
}

void AddHeading(forms::Label& control, Binder& binder, QFormLayout& rows) {
  auto* heading = new QLabel(rows.parentWidget());
  QFont font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  binder.Bind(control, *heading);
  rows.addRow(heading);
}

}  // namespace

OptionsWindow::OptionsWindow(core::Options& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard), form_(form) {
  auto* content = new QWidget(this);
  auto* tabs = new QTabWidget(content);
  tabs->addTab(MakeGeneralPage(tabs), QString());
  tabs->addTab(MakePortPage(tabs), QString());
  Bindings().Bind(form.SSTab1, *tabs);
  auto* layout = new QVBoxLayout(content);
  layout->addWidget(tabs, 1);
  layout->addWidget(MakeButtons(content));
  setCentralWidget(content);
  // The note wraps: without this the window would come up with the height of one line for it.
  const int width = content->sizeHint().width();
  content->setMinimumSize(width, layout->totalHeightForWidth(width));
  // A size that was set is kept when the window closes; otherwise each opening would guess one.
  ResizeWithinScreen(content->minimumSize());
  Follow();
}

QWidget* OptionsWindow::MakeGeneralPage(QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* layout = new QGridLayout(page);
  layout->addWidget(MakeServices(page), 0, 0);
  layout->addWidget(MakeAdvanced(page), 0, 1);
  layout->addWidget(MakeOtherDetails(page), 1, 0, 1, 2);
  layout->setRowStretch(1, 1);
  return page;
}

QGroupBox* OptionsWindow::MakeServices(QWidget* parent) {
  auto* group = MakeGroup(form_.Frame7, Bindings(), parent);
  auto* layout = new QVBoxLayout(group);
  for (auto* control :
       {&form_.PortChk, &form_.ActiveMonChk, &form_.SyncTimeChk, &form_.IdentDChk}) {
    layout->addWidget(MakeTick(*control, Bindings(), group));
  }
  return group;
}

QGroupBox* OptionsWindow::MakeAdvanced(QWidget* parent) {
  auto* group = MakeGroup(form_.Frame4, Bindings(), parent);
  auto* layout = new QVBoxLayout(group);
  for (auto* control : {&form_.VerboseChk, &form_.OnTopChk}) {
    layout->addWidget(MakeTick(*control, Bindings(), group));
  }
  layout->addStretch(1);
  return group;
}

QGroupBox* OptionsWindow::MakeOtherDetails(QWidget* parent) {
  auto* group = MakeGroup(form_.Frame5, Bindings(), parent);
  auto* rows = new QFormLayout(group);
  rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  AddHeading(form_.NotificationLbl, Bindings(), *rows);
  MakeField(form_.EmailLbl, form_.EmailTxt, Bindings(), *rows);
  MakeField(form_.SMTPLbl, form_.SMTPTxt, Bindings(), *rows);
  MakeField(form_.ICQLbl, form_.ICQtxt, Bindings(), *rows);
  auto* note = new QLabel(group);
  note->setWordWrap(true);
  Bindings().Bind(form_.OptionalLbl, *note);
  rows->addRow(note);
  rows->addItem(new QSpacerItem(0, group->fontMetrics().lineSpacing() / 2));
  AddHeading(form_.IdentLbl, Bindings(), *rows);
  MakeField(form_.IdentDLbl, form_.IdentDTxt, Bindings(), *rows);
  return group;
}

QWidget* OptionsWindow::MakePortPage(QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* group = MakeGroup(form_.Frame1, Bindings(), page);
  auto* grid = new QGridLayout(group);
  grid->addWidget(MakeSlotButtons(group), 0, 0);
  AddSocket(group, *grid);
  grid->addWidget(MakeAttempt(group), 3, 0, 1, 3);
  grid->addWidget(MakeResponses(group), 4, 0, 1, 3);
  auto* defaults = new QPushButton(group);
  Bindings().Bind(form_.Command3, *defaults);
  grid->addWidget(defaults, 5, 0, 1, 3, Qt::AlignRight);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(3, 1);
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(group);
  return page;
}

QWidget* OptionsWindow::MakeSlotButtons(QWidget* parent) {
  struct Look {
    QString name;
    QKeySequence keys;
  };
  const Look looks[] = {{tr("Previous slot"), QKeySequence(Qt::ALT | Qt::Key_Left)},
                        {tr("Next slot"), QKeySequence(Qt::ALT | Qt::Key_Right)}};
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  for (std::size_t i = 0; i < form_.Command4.size(); ++i) {
    auto* button = new QPushButton(row);
    button->setAccessibleName(looks[i].name);
    Bindings().Bind(form_.Command4[i], *button);
    button->setShortcut(looks[i].keys);
    button->setFixedWidth(button->sizeHint().height() * 3 / 2);
    layout->addWidget(button);
  }
  layout->addStretch(1);
  return row;
}

void OptionsWindow::AddSocket(QWidget* parent, QGridLayout& grid) {
  auto* number = new QLineEdit(parent);
  auto* numberName = new QLabel(parent);
  auto* description = new QLineEdit(parent);
  auto* descriptionName = new QLabel(parent);
  auto* picture = new QLabel(parent);
  picture->setAccessibleName(tr("What callers get"));
  number->setFixedWidth(number->fontMetrics().horizontalAdvance("0000000000"));
  description->setMinimumWidth(description->fontMetrics().averageCharWidth() * kFieldColumns);
  Bindings().Bind(form_.PortNumTxt, *number);
  Bindings().Bind(form_.SocketLbl, *numberName, *number);
  Bindings().Bind(form_.Image7, *picture, kPictureSize);
  Bindings().Bind(form_.PortDescrip, *description);
  Bindings().Bind(form_.DescripLbl, *descriptionName, *description);
  grid.addWidget(numberName, 1, 0);
  grid.addWidget(number, 1, 1, Qt::AlignLeft);
  grid.addWidget(descriptionName, 2, 0);
  grid.addWidget(description, 2, 1, 1, 2);
  grid.addWidget(picture, 0, 2, 2, 1, Qt::AlignRight | Qt::AlignTop);
  // What is typed next takes the place of the 0 that an emptied field is given.
  Bindings().Observe(form_.PortNumTxt, [this, number](const forms::Change& /*change*/) {
    if (form_.PortNumTxt.Text() == "0" && number->hasFocus()) number->selectAll();
  });
}

QGroupBox* OptionsWindow::MakeAttempt(QWidget* parent) {
  auto* group = MakeGroup(form_.Frame2, Bindings(), parent);
  auto* action = new QComboBox(group);
  auto* text = new QPlainTextEdit(group);
  action->setAccessibleName(tr("Action"));
  text->setAccessibleName(tr("Text to send"));
  text->setMinimumHeight(text->fontMetrics().lineSpacing() * kTextRows);
  Bindings().BindChoice(form_.ActionCombo, *action);
  Bindings().Bind(form_.TextToSend, *text);
  auto* layout = new QVBoxLayout(group);
  layout->addWidget(action);
  layout->addWidget(text, 1);
  return group;
}

QGroupBox* OptionsWindow::MakeResponses(QWidget* parent) {
  auto* group = MakeGroup(form_.Frame3, Bindings(), parent);
  auto* grid = new QGridLayout(group);
  int place = 0;
  for (auto* control : {&form_.SirenChk, &form_.WhoisChk, &form_.TraceRouteChk, &form_.HangupChk,
                        &form_.ShutDownChk, &form_.VisualAlert}) {
    constexpr int kRows = 2;
    grid->addWidget(MakeTick(*control, Bindings(), group), place % kRows, place / kRows);
    ++place;
  }
  return group;
}

QWidget* OptionsWindow::MakeButtons(QWidget* parent) {
  auto* row = new QWidget(parent);
  ok_ = new QPushButton(row);
  auto* cancel = new QPushButton(row);
  ok_->setDefault(true);
  Bindings().Bind(form_.Command1, *ok_);
  Bindings().Bind(form_.Command2, *cancel);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  layout->addStretch(1);
  layout->addWidget(ok_);
  layout->addWidget(cancel);
  return row;
}

void OptionsWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) return FormWindow::keyPressEvent(event);
  auto* focused = qobject_cast<QPushButton*>(focusWidget());
  (focused != nullptr ? focused : ok_)->click();
}

}  // namespace tallowin::desktop
