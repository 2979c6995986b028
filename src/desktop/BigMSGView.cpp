#include "desktop/BigMSGView.h"

#include <QAccessible>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <algorithm>

namespace tallowin::desktop {

namespace {

// Of the screen's width and height, and of the window's.
constexpr double kWidth = 0.7;
constexpr double kHeight = 0.45;
constexpr double kLineWidth = 0.86;
constexpr double kTextHeight = 0.6;
constexpr double kTitleSize = 0.35;  // of the warning's letters

constexpr const char* kColours = "background: #b00000; color: white;";

/// Verdana, or what the system has in its place, in the largest letters with which the text fits.
QFont FontFor(const QString& text, QSizeF room) {
  constexpr int kTrialSize = 100;
  QFont font("Verdana");
  font.setStyleHint(QFont::SansSerif);
  font.setBold(true);
  font.setPixelSize(kTrialSize);
  const QSizeF trial = QFontMetricsF(font).size(0, text);
  if (trial.isEmpty()) return font;
  const double scale = std::min(room.width() / trial.width(), room.height() / trial.height());
  font.setPixelSize(std::max(1, static_cast<int>(kTrialSize * scale)));
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
  // There is none while the last one is being unplugged.
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  const QRect area = screen->availableGeometry();
  QRect place(0, 0, static_cast<int>(area.width() * kWidth),
              static_cast<int>(area.height() * kHeight));
  place.moveCenter(area.center());
  const QFont font =
      FontFor(warning_->text(), {place.width() * kLineWidth, place.height() * kTextHeight});
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
