#include "desktop/BoxText.h"

#include <QGridLayout>
#include <QLabel>
#include <QScreen>
#include <QTextDocument>
#include <QTextEdit>
#include <algorithm>

namespace tallowin::desktop {

namespace {

constexpr int kFewLines = 3;
constexpr int kColumns = 100;  // of average width

bool NeedsRoom(const QString& text) {
  const QStringList lines = text.split('\n');
  return lines.size() > kFewLines ||
         std::ranges::any_of(lines, [](const QString& line) { return line.size() > kColumns; });
}

QTextEdit* MakeView(QMessageBox& box) {
  auto* view = new QTextEdit(&box);
  view->setObjectName("MsgBoxText");
  view->setAccessibleName(box.windowTitle());
  view->setAcceptRichText(false);
  view->setPlainText(box.text());
  view->setReadOnly(true);
  view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  view->setTabChangesFocus(true);
  view->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  view->setFrameShape(QFrame::NoFrame);
  view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  QPalette colours = box.palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    colours.setColor(group, QPalette::Base, colours.color(group, QPalette::Window));
    colours.setColor(group, QPalette::Text, colours.color(group, QPalette::WindowText));
  }
  view->setPalette(colours);
  return view;
}

/// What a message box leaves for the text; it never grows wider than that.
int WidestText(QTextEdit& view, QGridLayout& grid, int screenWidth) {
  constexpr int kSmallScreen = 1024;
  const int widestBox =
      screenWidth <= kSmallScreen ? screenWidth : std::min(screenWidth - 480, 1000);
  // Measured with a view that is wider than the buttons are.
  view.setFixedWidth(widestBox);
  grid.invalidate();
  return widestBox - (grid.totalMinimumSize().width() - widestBox);
}

/// As wide as the lines want and as high as the text, within the bounds of the screen.
void SetSize(QTextEdit& view, int widest, int highest) {
  // Measured on a document of its own: the view keeps its own one at the width of the view.
  QTextDocument document;
  document.setDefaultFont(view.font());
  QTextOption wrapping;
  wrapping.setWrapMode(view.wordWrapMode());
  document.setDefaultTextOption(wrapping);
  document.setPlainText(view.toPlainText());
  const int width = std::min(static_cast<int>(document.idealWidth()) + 1, widest);
  document.setTextWidth(width);
  const int height = static_cast<int>(document.size().height()) + 1;
  view.setFixedSize(width, std::min(height, highest));
}

}  // namespace

void GiveRoom(QMessageBox& box) {
  auto* label = box.findChild<QLabel*>("qt_msgbox_label");
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (label == nullptr || grid == nullptr || !NeedsRoom(box.text())) return;
  QTextEdit* view = MakeView(box);
  delete grid->replaceWidget(label, view);
  label->hide();
  const QSize screen = box.screen()->availableSize();
  SetSize(*view, WidestText(*view, *grid, screen.width()), screen.height() * 3 / 5);
}

}  // namespace tallowin::desktop
