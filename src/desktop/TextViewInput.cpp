// The part of the view that follows the user's hands: keyboard, mouse, selection.
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyleHints>
#include <algorithm>

#include "desktop/TextView.h"

namespace tallowin::desktop {

namespace {

enum Motion {
  NextChar,
  PreviousChar,
  NextWord,
  PreviousWord,
  StartOfLine,
  EndOfLine,
  NextLine,
  PreviousLine,
  NextPage,
  PreviousPage,
  StartOfDocument,
  EndOfDocument,
};

struct MotionKey {
  QKeySequence::StandardKey move;
  QKeySequence::StandardKey select;
  Motion motion;
};

constexpr MotionKey kMotionKeys[] = {
    {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, NextChar},
    {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, PreviousChar},
    {QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, NextWord},
    {QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, PreviousWord},
    {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, StartOfLine},
    {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, EndOfLine},
    {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, NextLine},
    {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, PreviousLine},
    {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, NextPage},
    {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, PreviousPage},
    {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument, StartOfDocument},
    {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, EndOfDocument},
};

bool IsWordCharacter(QChar c) {
  return c.isLetterOrNumber() || QStringLiteral("._-:@").contains(c);
}

/// Punctuation around a word is none of it, but a double colon is how addresses may start and end.
bool IsPunctuation(QChar c, QChar neighbour) { return (c == '.' || c == ':') && neighbour != c; }

/// Addresses, host names and times in one piece: they are what is copied from a log.
std::pair<int, int> WordAt(const QString& text, int column) {
  int start = column;
  int end = column;
  while (start > 0 && IsWordCharacter(text[start - 1])) --start;
  while (end < text.size() && IsWordCharacter(text[end])) ++end;
  while (start + 1 < end && IsPunctuation(text[start], text[start + 1])) ++start;
  while (start + 1 < end && IsPunctuation(text[end - 1], text[end - 2])) --end;
  return {start, end};
}

}  // namespace

QString TextView::SelectedText() const {
  const auto [from, to] = std::minmax(anchor_, caret_);
  QString selected;
  for (std::size_t row = from.row; row <= to.row; ++row) {
    const QString text = RowText(row);
    const int start = row == from.row ? from.column : 0;
    const int end = row == to.row ? to.column : static_cast<int>(text.size());
    selected += text.mid(start, end - start);
    if (row < to.row && rows_.HasLineEnd(text_, row)) selected += '\n';
  }
  return selected;
}

void TextView::Copy() const {
  if (anchor_ != caret_) QGuiApplication::clipboard()->setText(SelectedText());
}

void TextView::SelectAll() { Select({}, End()); }

void TextView::Select(Position anchor, Position caret) {
  anchor_ = anchor;
  caret_ = caret;
  following_ = AtEnd() && anchor_ == caret_;
  viewport()->update();
}

TextView::Position TextView::End() const {
  const std::size_t last = rows_.Count() - 1;
  return {last, static_cast<int>(RowText(last).size())};
}

TextView::Position TextView::PositionAt(QPoint point) const {
  const QPoint origin = LayoutOrigin();
  const int below = (point.y() - origin.y()) / RowHeight() - (point.y() < origin.y() ? 1 : 0);
  if (below < 0 && FirstRow() < static_cast<std::size_t>(-below)) return {};
  const std::size_t row = FirstRow() + static_cast<std::size_t>(static_cast<std::ptrdiff_t>(below));
  if (row >= rows_.Count()) return End();
  const auto layout = LayOut(row);
  return {row, layout->lineAt(0).xToCursor(point.x() - origin.x())};
}

TextView::Position TextView::MovedByRows(std::ptrdiff_t rows) const {
  const auto last = static_cast<std::ptrdiff_t>(rows_.Count() - 1);
  const auto target =
      std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(caret_.row) + rows, 0, last);
  const auto row = static_cast<std::size_t>(target);
  const qreal x = LayOut(caret_.row)->lineAt(0).cursorToX(caret_.column);
  return {row, LayOut(row)->lineAt(0).xToCursor(x)};
}

TextView::Position TextView::MovedInRow(int motion) const {
  const bool forward = motion == NextChar || motion == NextWord;
  const auto layout = LayOut(caret_.row);
  const int length = static_cast<int>(layout->text().size());
  const int column = std::min(caret_.column, length);
  if (forward && column == length) {
    return caret_.row + 1 < rows_.Count() ? Position{caret_.row + 1, 0} : caret_;
  }
  if (!forward && column == 0) {
    if (caret_.row == 0) return caret_;
    return {caret_.row - 1, static_cast<int>(RowText(caret_.row - 1).size())};
  }
  const auto step = motion == NextWord || motion == PreviousWord ? QTextLayout::SkipWords
                                                                 : QTextLayout::SkipCharacters;
  return {caret_.row, forward ? layout->nextCursorPosition(column, step)
                              : layout->previousCursorPosition(column, step)};
}

TextView::Position TextView::Moved(int motion) const {
  switch (motion) {
    case StartOfLine:
      return {caret_.row, 0};
    case EndOfLine:
      return {caret_.row, static_cast<int>(RowText(caret_.row).size())};
    case NextLine:
      return MovedByRows(1);
    case PreviousLine:
      return MovedByRows(-1);
    case NextPage:
      return MovedByRows(RowsOnShow());
    case PreviousPage:
      return MovedByRows(-RowsOnShow());
    case StartOfDocument:
      return {};
    case EndOfDocument:
      return End();
    default:
      return MovedInRow(motion);
  }
}

bool TextView::MoveByKey(QKeyEvent* event) {
  for (const MotionKey& key : kMotionKeys) {
    const bool selects = event->matches(key.select);
    if (!selects && !event->matches(key.move)) continue;
    const Position target = Moved(key.motion);
    Reveal(target);
    Select(selects ? anchor_ : target, target);
    // Otherwise the next line of the log would take the caret back to the end.
    following_ = following_ && target.row + 1 == rows_.Count();
    return true;
  }
  return false;
}

void TextView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
  } else if (event->matches(QKeySequence::SelectAll)) {
    SelectAll();
  } else if (!MoveByKey(event)) {
    QAbstractScrollArea::keyPressEvent(event);
  }
}

void TextView::Reveal(Position position) {
  const auto bar = verticalScrollBar();
  const int row = static_cast<int>(position.row);
  if (row < bar->value()) bar->setValue(row);
  if (row >= bar->value() + RowsOnShow()) bar->setValue(row - RowsOnShow() + 1);
  const int x = static_cast<int>(LayOut(position.row)->lineAt(0).cursorToX(position.column));
  const auto across = horizontalScrollBar();
  const int room = viewport()->width() - 2 * LayoutMargin;
  if (x < across->value()) across->setValue(x);
  if (x > across->value() + room) across->setValue(x - room);
}

void TextView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const Position position = PositionAt(event->pos());
  const auto interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
  if (sinceDoubleClick_.isValid() && !sinceDoubleClick_.hasExpired(interval)) {
    Select({position.row, 0}, {position.row, static_cast<int>(RowText(position.row).size())});
    return;
  }
  dragging_ = true;
  Select(event->modifiers() & Qt::ShiftModifier ? anchor_ : position, position);
}

void TextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const Position position = PositionAt(event->pos());
  const auto [start, end] = WordAt(RowText(position.row), position.column);
  Select({position.row, start}, {position.row, end});
  sinceDoubleClick_.start();
}

void TextView::mouseMoveEvent(QMouseEvent* event) {
  if (!dragging_) return;
  DragTo(event->pos());
  constexpr int kScrollInterval = 50;
  if (viewport()->rect().contains(event->pos())) {
    dragScroll_.stop();
  } else if (!dragScroll_.isActive()) {
    dragScroll_.start(kScrollInterval, this);
  }
}

void TextView::DragTo(QPoint point) {
  const Position position = PositionAt(point);
  Select(anchor_, position);
  Reveal(position);
}

void TextView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  dragging_ = false;
  dragScroll_.stop();
  QClipboard* clipboard = QGuiApplication::clipboard();
  if (anchor_ != caret_ && clipboard->supportsSelection()) {
    clipboard->setText(SelectedText(), QClipboard::Selection);
  }
}

void TextView::timerEvent(QTimerEvent* event) {
  if (event->timerId() == dragScroll_.timerId()) {
    DragTo(viewport()->mapFromGlobal(QCursor::pos()));
  } else {
    QAbstractScrollArea::timerEvent(event);
  }
}

void TextView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  QAction* copy = menu->addAction(QIcon::fromTheme("edit-copy"), tr("&Copy"), QKeySequence::Copy,
                                  this, [this] { Copy(); });
  copy->setEnabled(anchor_ != caret_);
  menu->addSeparator();
  menu->addAction(QIcon::fromTheme("edit-select-all"), tr("Select &All"), QKeySequence::SelectAll,
                  this, [this] { SelectAll(); });
  menu->popup(event->globalPos());
}

void TextView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void TextView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

}  // namespace tallowin::desktop
