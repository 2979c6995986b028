#include "desktop/TableView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

#include "desktop/TableModel.h"
#include "desktop/TableOrder.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

constexpr int kWidestColumn = 56;     // average characters, where half of the table is not wider
constexpr qsizetype kMeasured = 400;  // characters, more than any column shows
constexpr int kRowPadding = 4;
constexpr int kTipColumns = 100;
constexpr int kTipCharacters = 4000;

/// The end of a path tells more than its middle.
class CellDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, kRowPadding);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = option->text.startsWith('/') ? Qt::ElideMiddle : Qt::ElideRight;
    // A number keeps off the text of the next column, as its header does.
    if ((option->displayAlignment & Qt::AlignRight) != 0) option->text += ' ';
  }
};

/// Where a line that is too long is broken: behind its last blank that fits, otherwise anywhere.
qsizetype BreakOf(const QString& line) {
  const qsizetype blank = line.lastIndexOf(' ', kTipColumns - 1);
  return blank > kTipColumns / 2 ? blank + 1 : kTipColumns;
}

/// Tool tips of plain text are as wide as their lines, be it wider than the screen.
QString Folded(const QString& text) {
  QStringList folded;
  for (QString line : text.left(kTipCharacters).split('\n')) {
    while (line.size() > kTipColumns) {
      const qsizetype end = BreakOf(line);
      folded.append(line.left(end));
      line.remove(0, end);
    }
    folded.append(line);
  }
  return folded.join('\n');
}

QString WholeText(const QModelIndex& index) {
  return index.data(TableModel::kWholeText).toString();
}

}  // namespace

TableView::TableView(forms::ListView& control, Binder& binder, QWidget* parent)
    : QTreeView(parent),
      control_(control),
      binder_(binder),
      model_(new TableModel(control, this)),
      order_(new TableOrder(this)) {
  order_->setSourceModel(model_);
  setModel(order_);
  SetLook();
  SetHeader();
  AddCopy();
  connect(model_, &TableModel::rowsInserted, this,
          [this](const QModelIndex& /*parent*/, int first, int last) { Fit(first, last); });
  connect(model_, &TableModel::dataChanged, this,
          [this](const auto& first, const auto& last) { Fit(first.row(), last.row()); });
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (!selectedByPress_) Select(index);
  });
}

void TableView::SetLook() {
  setItemDelegate(new CellDelegate(this));
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setAlternatingRowColors(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
}

void TableView::SetHeader() {
  header()->setSectionsMovable(false);
  header()->setSortIndicatorClearable(true);
  header()->setSortIndicator(-1, Qt::AscendingOrder);
  setSortingEnabled(true);
  connect(header(), &QHeaderView::sectionResized, this, [this](int column) {
    if (!fitting_ && header()->isVisible()) sizedByUser_.insert(column);
  });
}

void TableView::AddCopy() {
  auto* copy = new QAction(QIcon::fromTheme("edit-copy"), tr("&Copy Row"), this);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  connect(copy, &QAction::triggered, this, &TableView::CopyRow);
  addAction(copy);
  setContextMenuPolicy(Qt::ActionsContextMenu);
}

void TableView::AlignRight(int column) { model_->AlignRight(column); }

void TableView::Follow(const forms::Change& change) {
  model_->Follow(change);
  switch (change.property) {
    case forms::Property::Everything:
    case forms::Property::Items:
    case forms::Property::Columns:
      FitAll();
      ShowSelection();
      break;
    case forms::Property::Value:
      ShowSelection();
      break;
    default:
      break;
  }
}

void TableView::FitAll() {
  widths_.assign(control_.Columns().size(), 0);
  Fit(0, model_->rowCount({}) - 1);
}

void TableView::Fit(int first, int last) {
  const QScopedValueRollback<bool> fitting(fitting_, true);
  // The last column takes what the others leave.
  const int columns = static_cast<int>(widths_.size());
  for (int column = 0; column + 1 < columns; ++column) {
    if (!sizedByUser_.contains(column)) FitColumn(column, first, last);
  }
}

void TableView::FitColumn(int column, int first, int last) {
  const QFontMetrics metrics = fontMetrics();
  const int widest = std::max(kWidestColumn * metrics.averageCharWidth(), viewport()->width() / 2);
  int& width = widths_[static_cast<std::size_t>(column)];
  for (int row = first; row <= last && width < widest; ++row) {
    const QString text = model_->index(row, column).data().toString().left(kMeasured);
    width = std::min(widest, std::max(width, metrics.horizontalAdvance(text)));
  }
  const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
  const int wanted = width + 2 * margin + metrics.averageCharWidth();
  header()->resizeSection(column, std::max(wanted, header()->sectionSizeHint(column)));
}

void TableView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (showingSelection_ || selected.isEmpty()) return;
  selectedByPress_ = true;
  Select(selected.indexes().constFirst());
}

/// No row can be unselected again by the user.
QItemSelectionModel::SelectionFlags TableView::selectionCommand(const QModelIndex& index,
                                                                const QEvent* event) const {
  const auto flags = QTreeView::selectionCommand(index, event);
  const auto unselects = QItemSelectionModel::Deselect | QItemSelectionModel::Toggle;
  if ((flags & unselects) == 0) return flags;
  return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
}

void TableView::mousePressEvent(QMouseEvent* event) {
  selectedByPress_ = false;
  QTreeView::mousePressEvent(event);
}

void TableView::Select(const QModelIndex& index) {
  const auto row = static_cast<std::size_t>(order_->mapToSource(index).row());
  binder_.Deliver([this, row] {
    if (row < control_.RowCount()) control_.Select(row);
  });
}

void TableView::ShowSelection() {
  const QScopedValueRollback<bool> showing(showingSelection_, true);
  const auto selected = control_.SelectedItem();
  if (!selected) {
    clearSelection();
    return;
  }
  model_->ShowPending();
  const QModelIndex index = order_->mapFromSource(model_->index(static_cast<int>(*selected), 0));
  if (selectionModel()->isRowSelected(index.row())) return;
  setCurrentIndex(index);
}

void TableView::CopyRow() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  if (rows.isEmpty()) return;
  QStringList cells;
  for (int column = 0; column < order_->columnCount(); ++column) {
    cells.append(OneLine(WholeText(rows.constFirst().siblingAtColumn(column))));
  }
  QApplication::clipboard()->setText(cells.join('\t'));
}

bool TableView::IsCutOff(const QModelIndex& index) const {
  return WholeText(index) != index.data().toString() ||
         sizeHintForIndex(index).width() > visualRect(index).width();
}

bool TableView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto& help = *static_cast<QHelpEvent*>(event);
    const QModelIndex index = indexAt(help.pos());
    if (index.isValid() && IsCutOff(index)) {
      const QString tip = ToToolTip(FromQString(Folded(WholeText(index))));
      QToolTip::showText(help.globalPos(), tip, viewport(), visualRect(index));
      return true;
    }
  }
  return QTreeView::viewportEvent(event);
}

}  // namespace tallowin::desktop
