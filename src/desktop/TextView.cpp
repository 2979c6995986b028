#include "desktop/TextView.h"

#include <QAccessible>
#include <QFontDatabase>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <limits>

#include "desktop/Text.h"
#include "desktop/TextViewAccessible.h"

namespace tallowin::desktop {

namespace {

constexpr int kTabColumns = 8;
// Wider than any row can become.
constexpr qreal kUnlimitedWidth = 1 << 20;

int ToInt(std::size_t value) {
  return static_cast<int>(std::min<std::size_t>(value, std::numeric_limits<int>::max()));
}

}  // namespace

TextView::TextView(const std::string& text, QWidget* parent)
    : QAbstractScrollArea(parent), text_(text) {
  QAccessible::installFactory(TextViewAccessible::Make);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setCursor(Qt::IBeamCursor);
  viewport()->setBackgroundRole(QPalette::Base);
  flush_.setSingleShot(true);
  flush_.callOnTimeout(this, [this] { Flush(); });
}

void TextView::TextReplaced() {
  rows_.Clear();
  rows_.ExtendTo(text_);
  anchor_ = caret_ = {};
  widest_ = 0;
  following_ = true;
  dragging_ = false;
  ScheduleFlush();
}

void TextView::TextAppended() { ScheduleFlush(); }

void TextView::CaretMoved(std::size_t position) {
  wantedCaret_ = position;
  ScheduleFlush();
}

void TextView::ScheduleFlush() {
  if (!flush_.isActive()) flush_.start(FlushInterval);
}

void TextView::Flush() {
  rows_.ExtendTo(text_);
  UpdateScrollBars();
  const auto wanted = std::exchange(wantedCaret_, std::nullopt);
  if (wanted && *wanted < text_.size()) {
    Reveal({rows_.RowAt(*wanted), 0});
  } else if (following_) {
    caret_ = anchor_ = End();
  }
  viewport()->update();
}

void TextView::UpdateScrollBars() {
  adjusting_ = true;
  verticalScrollBar()->setPageStep(RowsOnShow());
  verticalScrollBar()->setRange(0, std::max(0, ToInt(rows_.Count()) - RowsOnShow()));
  if (following_) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  const int width = viewport()->width();
  horizontalScrollBar()->setSingleStep(fontMetrics().averageCharWidth() * 2);
  horizontalScrollBar()->setPageStep(width);
  horizontalScrollBar()->setRange(0, std::max(0, widest_ + 2 * LayoutMargin - width));
  adjusting_ = false;
}

void TextView::NoteWidth(qreal width) {
  const int needed = static_cast<int>(width) + 1;
  if (needed <= widest_) return;
  // The widest row that was ever on show decides, since all others would have to be laid out first.
  widest_ = needed;
  QTimer::singleShot(0, this, [this] { UpdateScrollBars(); });
}

QString TextView::RowText(std::size_t row) const { return ToQString(rows_.Row(text_, row)); }

std::unique_ptr<QTextLayout> TextView::LayOut(std::size_t row) const {
  auto layout = std::make_unique<QTextLayout>(RowText(row), font());
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setWrapMode(QTextOption::NoWrap);
  option.setTextDirection(Qt::LeftToRight);
  option.setTabStopDistance(kTabColumns * fontMetrics().horizontalAdvance(' '));
  layout->setTextOption(option);
  layout->beginLayout();
  QTextLine line = layout->createLine();
  line.setLineWidth(kUnlimitedWidth);
  layout->endLayout();
  return layout;
}

int TextView::RowHeight() const { return std::max(1, fontMetrics().lineSpacing()); }

int TextView::RowsOnShow() const {
  return std::max(1, (viewport()->height() - 2 * LayoutMargin) / RowHeight());
}

std::size_t TextView::FirstRow() const {
  return static_cast<std::size_t>(std::max(0, verticalScrollBar()->value()));
}

QPoint TextView::LayoutOrigin() const {
  return {LayoutMargin - horizontalScrollBar()->value(), LayoutMargin};
}

bool TextView::AtEnd() const {
  return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

QString TextView::VisibleText() const {
  QString text;
  const std::size_t end =
      std::min(rows_.Count(), FirstRow() + static_cast<std::size_t>(RowsOnShow()));
  for (std::size_t row = FirstRow(); row < end; ++row) text += RowText(row) + '\n';
  return text;
}

void TextView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  QPoint origin = LayoutOrigin();
  for (std::size_t row = FirstRow(); row < rows_.Count() && origin.y() < viewport()->height();
       ++row) {
    PaintRow(painter, row, origin);
    origin.ry() += RowHeight();
  }
}

void TextView::PaintRow(QPainter& painter, std::size_t row, QPointF origin) {
  const auto layout = LayOut(row);
  NoteWidth(layout->lineAt(0).naturalTextWidth());
  const int length = static_cast<int>(layout->text().size());
  // A character from a taller font sits on the row's own line and stays inside the row: no text may
  // cover that of its neighbours.
  painter.setClipRect(QRectF(0, origin.y(), viewport()->width(), RowHeight()));
  origin.ry() += fontMetrics().ascent() - layout->lineAt(0).ascent();
  layout->draw(&painter, origin, Highlights(row, length), viewport()->rect());
  if (hasFocus() && caret_.row == row) {
    layout->drawCursor(&painter, origin, std::min(caret_.column, length));
  }
}

QList<QTextLayout::FormatRange> TextView::Highlights(std::size_t row, int length) const {
  const auto [from, to] = std::minmax(anchor_, caret_);
  if (from == to || row < from.row || row > to.row) return {};
  const int start = row == from.row ? std::min(from.column, length) : 0;
  const int end = row == to.row ? std::min(to.column, length) : length;
  const auto group = isActiveWindow() ? QPalette::Active : QPalette::Inactive;
  QTextLayout::FormatRange range{start, end - start, {}};
  range.format.setBackground(palette().brush(group, QPalette::Highlight));
  range.format.setForeground(palette().brush(group, QPalette::HighlightedText));
  return {range};
}

void TextView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  UpdateScrollBars();
}

void TextView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  widest_ = 0;
  UpdateScrollBars();
}

void TextView::scrollContentsBy(int /*dx*/, int dy) {
  if (dy != 0 && !adjusting_) following_ = AtEnd() && anchor_ == caret_;
  viewport()->update();
}

QSize TextView::viewportSizeHint() const {
  constexpr int kLeastColumns = 40;
  constexpr int kRows = 8;
  return {kLeastColumns * fontMetrics().averageCharWidth() + 2 * LayoutMargin,
          kRows * RowHeight() + 2 * LayoutMargin};
}

}  // namespace tallowin::desktop
