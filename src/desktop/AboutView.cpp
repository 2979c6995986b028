#include "desktop/AboutView.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/LinkLabel.h"

namespace tallowin::desktop {

namespace {

constexpr int kPictureSize = 112;
constexpr int kTitleScale = 2;

/// The icon of the suite, with a ring that spreads from its eye.
class AboutPicture : public QWidget {
 public:
  AboutPicture(forms::PictureBox& control, Binder& binder, QWidget* parent)
      : QWidget(parent), control_(control) {
    setFixedSize(kPictureSize, kPictureSize);
    setObjectName("picIcon");
    setAccessibleName("Tallowin");
    binder.Observe(control, [this](const forms::Change& /*change*/) { update(); });
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    // In the units in which the icon is drawn.
    constexpr double kUnits = 64;
    constexpr QPointF kEye(32, 31);
    constexpr double kEyeRadius = 4;
    constexpr double kSpread = 2;  // for each step
    constexpr double kSteps = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QApplication::windowIcon().paint(&painter, rect());
    const int step = QString::fromStdString(control_.Picture()).toInt();
    if (step == 0) return;
    painter.scale(width() / kUnits, height() / kUnits);
    QColor amber("#ffc65c");
    amber.setAlphaF(static_cast<float>(1 - step / (kSteps + 2)));
    painter.setPen(QPen(amber, 1.5));
    painter.drawEllipse(kEye, kEyeRadius + step * kSpread, kEyeRadius + step * kSpread);
  }

 private:
  forms::PictureBox& control_;
};

}  // namespace

AboutView::AboutView(core::FrmAbout& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard) {
  setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowCloseButtonHint);
  auto* content = new QWidget(this);
  auto* ok = new QPushButton(content);
  ok->setDefault(true);
  auto* layout = new QGridLayout(content);
  layout->setHorizontalSpacing(2 * layout->horizontalSpacing());
  layout->addWidget(new AboutPicture(form.picIcon, Bindings(), content), 0, 0, Qt::AlignTop);
  layout->addWidget(MakeTexts(form, content), 0, 1);
  layout->addWidget(ok, 1, 0, 1, 2, Qt::AlignRight);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  const int margin = 2 * layout->contentsMargins().left();
  layout->setContentsMargins(margin, margin, margin, margin);
  setCentralWidget(content);
  this->layout()->setSizeConstraint(QLayout::SetFixedSize);
  Bindings().Bind(form.cmdOK, *ok);
  ok->setFocus();
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
  Follow();
}

QWidget* AboutView::MakeTexts(core::FrmAbout& form, QWidget* parent) {
  auto* texts = new QWidget(parent);
  auto* title = new QLabel(texts);
  auto* version = new QLabel(texts);
  QFont large = title->font();
  large.setPointSizeF(kTitleScale * large.pointSizeF());
  large.setBold(true);
  title->setFont(large);
  auto* layout = new QVBoxLayout(texts);
  layout->setContentsMargins({});
  layout->addWidget(title);
  layout->addWidget(version);
  layout->addSpacing(version->sizeHint().height());
  layout->addWidget(new LinkLabel(form.Label1, Bindings(), texts));
  layout->addStretch(1);
  Bindings().Bind(form.lblTitle, *title);
  Bindings().Bind(form.lblVersion, *version);
  return texts;
}

}  // namespace tallowin::desktop
