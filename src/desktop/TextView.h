// A read-only view of a text that may grow without end.
#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QTextLayout>
#include <QTimer>
#include <chrono>
#include <compare>
#include <memory>
#include <optional>
#include <string>

#include "desktop/RowIndex.h"

namespace tallowin::desktop {

/// Paints the rows on show straight from the text of its owner, so that a line of the log costs an
/// entry in an index: a text widget of the toolkit takes several times the memory of the log itself
/// and a time per line that a flood of callers cannot spare. Changes are collected and shown some
/// 30 times a second. The user can select and copy with mouse and keyboard.
///
/// The view follows the end of the text, until the user scrolls away from it or selects something,
/// and again once the user is back there.
class TextView : public QAbstractScrollArea {
 public:
  static constexpr std::chrono::milliseconds FlushInterval{33};

  /// `text` must outlive the view. The owner of the text tells each change.
  explicit TextView(const std::string& text, QWidget* parent = nullptr);

  void TextReplaced();
  void TextAppended();
  /// The caret of the text moved to this byte and wants to be seen.
  void CaretMoved(std::size_t position);

  void SelectAll();
  void Copy() const;
  [[nodiscard]] QString SelectedText() const;
  /// The rows on show.
  [[nodiscard]] QString VisibleText() const;
  [[nodiscard]] std::size_t RowCount() const { return rows_.Count(); }

 protected:
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void timerEvent(QTimerEvent* event) override;
  [[nodiscard]] QSize viewportSizeHint() const override;

 private:
  static constexpr int LayoutMargin = 4;

  struct Position {
    std::size_t row = 0;
    int column = 0;  // in UTF-16 units of the row as it is shown
    auto operator<=>(const Position&) const = default;
  };

  void ScheduleFlush();
  void Flush();
  void UpdateScrollBars();
  void NoteWidth(qreal width);

  [[nodiscard]] QString RowText(std::size_t row) const;
  [[nodiscard]] std::unique_ptr<QTextLayout> LayOut(std::size_t row) const;
  [[nodiscard]] int RowHeight() const;
  [[nodiscard]] int RowsOnShow() const;
  [[nodiscard]] std::size_t FirstRow() const;
  /// Of the first row on show, in the viewport.
  [[nodiscard]] QPoint LayoutOrigin() const;
  [[nodiscard]] bool AtEnd() const;
  void PaintRow(QPainter& painter, std::size_t row, QPointF origin);
  [[nodiscard]] QList<QTextLayout::FormatRange> Highlights(std::size_t row, int length) const;

  [[nodiscard]] Position End() const;
  [[nodiscard]] Position PositionAt(QPoint point) const;
  [[nodiscard]] Position Moved(int motion) const;
  [[nodiscard]] Position MovedInRow(int motion) const;
  [[nodiscard]] Position MovedByRows(std::ptrdiff_t rows) const;
  bool MoveByKey(QKeyEvent* event);
  void Select(Position anchor, Position caret);
  void DragTo(QPoint point);
  void Reveal(Position position);

  const std::string& text_;
  RowIndex rows_;
  QTimer flush_;
  std::optional<std::size_t> wantedCaret_;
  bool following_ = true;
  bool adjusting_ = false;  // the scroll bars move by code and not by the user's hand
  int widest_ = 0;
  Position anchor_;
  Position caret_;
  bool dragging_ = false;
  QBasicTimer dragScroll_;
  QElapsedTimer sinceDoubleClick_;
};

}  // namespace tallowin::desktop
