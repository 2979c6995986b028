#include "desktop/AutoUpdateWindow.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/Text.h"
#include "desktop/TextView.h"

namespace tallowin::desktop {

namespace {

constexpr QSize kUpdateSize{560, 420};

/// Where a picture may stand one day.
QLabel* MakePlaceholder(QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
  label->setAlignment(Qt::AlignCenter);
  label->setMargin(2 * label->fontMetrics().averageCharWidth());
  return label;
}

}  // namespace

AutoUpdateWindow::AutoUpdateWindow(reporting::AutoUpdate& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard) {
  auto* content = new QWidget(this);
  auto* status = new QLabel(content);
  QFont bold = status->font();
  bold.setBold(true);
  status->setFont(bold);
  status->setWordWrap(true);
  auto* notes = new TextView(form.Text1.Text(), content);
  notes->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  notes->setAccessibleName(tr("Release notes"));
  auto* check = new QPushButton(content);
  auto* download = new QPushButton(content);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(check);
  buttons->addWidget(download);
  auto* layout = new QVBoxLayout(content);
  layout->addLayout(MakeVersions(form, content));
  layout->addSpacing(layout->spacing());
  layout->addWidget(status);
  layout->addWidget(notes, 1);
  layout->addLayout(buttons);
  Bindings().Bind(form.StatusTxt, *status);
  Bindings().Bind(form.Text1, *notes);
  Bindings().Bind(form.Command1, *check);
  Bindings().Bind(form.Command2, *download);
  // Switched off while it checks, the button has lost the keyboard to its neighbour.
  Bindings().Observe(form.Command1, [&form, check](const forms::Change& change) {
    if (change.property == forms::Property::Enabled && form.Command1.Enabled()) check->setFocus();
  });
  setCentralWidget(content);
  check->setFocus();
  ResizeWithinScreen(kUpdateSize);
  Follow();
}

QHBoxLayout* AutoUpdateWindow::MakeVersions(reporting::AutoUpdate& form, QWidget* parent) {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(1, 1);
  const auto add = [&](forms::Label& name, forms::Label& value) {
    auto* nameLabel = new QLabel(parent);
    auto* valueLabel = new QLabel(parent);
    const int row = grid->count() / 2;
    grid->addWidget(nameLabel, row, 0);
    grid->addWidget(valueLabel, row, 1);
    Bindings().Bind(name, *nameLabel);
    BindValue(value, *valueLabel);
  };
  add(form.Label2, form.InstVer);
  add(form.Label3, form.LatestVer);
  add(form.Label4, form.RlsDateTxt);
  auto* placeholder = MakePlaceholder(parent);
  Bindings().Bind(form.Label1, *placeholder);
  auto* versions = new QHBoxLayout;
  versions->addLayout(grid, 1);
  versions->addWidget(placeholder);
  return versions;
}

void AutoUpdateWindow::BindValue(forms::Label& control, QLabel& label) {
  label.setObjectName(QString::fromStdString(control.Name()));
  label.setTextFormat(Qt::PlainText);
  label.setTextInteractionFlags(Qt::TextSelectableByMouse);
  label.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  Bindings().Observe(control, [&control, &label](const forms::Change&) {
    constexpr qsizetype kShown = 100;
    const QString text = ToQString(control.Caption());
    label.setText(text.size() > kShown ? text.left(kShown) + QChar(0x2026) : text);
  });
}

}  // namespace tallowin::desktop
