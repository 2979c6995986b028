#include "desktop/BigMSGView.h"

#include <QAccessible>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <algorithm>

namespace tallowin::desktop {

namespace {

// Of the screen's width and height, and of the window's width.
constexpr double kWidth = 0.7;
constexpr double kHeight = 0.45;
constexpr double kLineWidth = 0.86;
constexpr double kTitleSize = 0.35;  // of the warning's letters

constexpr const char* kColours = "background: #b00000; color: white;";

/// Verdana, or what the system has in its place, in letters that make the text this wide.
QFont FontFor(const QString& text, double width) {
  constexpr int kTrialSize = 100;
  QFont font("Verdana");
  font.setStyleHint(QFont::SansSerif);
  font.setBold(true);
  font.setPixelSize(kTrialSize);
  const int trialWidth = QFontMetrics(font).size(0, text).width();
  if (trialWidth > 0)
    font.setPixelSize(std::max(1, static_cast<int>(kTrialSize * width / trialWidth)));
  return font;
}

}  // namespace

BigMSGView::BigMSGView(portsentry::BigMSG& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::LeaveKeyboard) {
  setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
  setCentralWidget(MakeContent(form));
  Follow();
}

QWidget* BigMSGView::MakeContent(portsentry::BigMSG& form) {
  auto* content = new QWidget(this);
  content->setStyleSheet(kColours);
  title_ = new QLabel(content);
  warning_ = new QLabel(content);
  warning_->setAlignment(Qt::AlignCenter);
  // The warning takes the whole window and the title lies over its corner, so that the one is in
  // the middle whatever the other is.
  auto* layout = new QGridLayout(content);
  layout->addWidget(warning_, 0, 0);
  layout->addWidget(title_, 0, 0, Qt::AlignLeft | Qt::AlignTop);
  title_->raise();
  Bindings().Bind(form.Label1, *warning_);
  Bindings().Bind(form.Label2, *title_);
  // The text changes when the window has come up already.
  Bindings().Observe(form.Label1, [this](const forms::Change& /*change*/) {
    if (isVisible()) FitToScreen();
  });
  return content;
}

void BigMSGView::FitToScreen() {
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  QRect place(0, 0, static_cast<int>(area.width() * kWidth),
              static_cast<int>(area.height() * kHeight));
  place.moveCenter(area.center());
  const QFont font = FontFor(warning_->text(), place.width() * kLineWidth);
  warning_->setFont(font);
  QFont small = font;
  small.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * kTitleSize)));
  title_->setFont(small);
  setGeometry(place);
}

void BigMSGView::showEvent(QShowEvent* event) {
  FormWindow::showEvent(event);
  FitToScreen();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

}  // namespace tallowin::desktop
