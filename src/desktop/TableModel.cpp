#include "desktop/TableModel.h"

#include <algorithm>

#include "desktop/Text.h"

namespace tallowin::desktop {

using forms::Property;

namespace {

constexpr int kWaitMilliseconds = 20;
constexpr int kShownCharacters = 1000;  // more than any screen has room for

QString Shown(const QString& whole) {
  if (whole.size() <= kShownCharacters) return OneLine(whole);
  return OneLine(whole.left(kShownCharacters)) + QChar(0x2026);  // an ellipsis
}

}  // namespace

QString OneLine(QString text) { return text.replace('\n', ' ').replace('\t', ' '); }

TableModel::TableModel(const forms::ListView& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list) {
  wait_.setSingleShot(true);
  wait_.setInterval(kWaitMilliseconds);
  connect(&wait_, &QTimer::timeout, this, &TableModel::ShowPending);
}

void TableModel::Follow(const forms::Change& change) {
  switch (change.property) {
    case Property::Everything:
    case Property::Items:
    case Property::Columns:
      Restart();
      break;
    case Property::AddedItem:
      if (!wait_.isActive()) wait_.start();
      break;
    case Property::Row:
      RowChanged(static_cast<int>(change.row));
      break;
    default:
      break;
  }
}

void TableModel::Restart() {
  beginResetModel();
  wait_.stop();
  changed_.reset();
  count_ = static_cast<int>(list_.RowCount());
  endResetModel();
}

void TableModel::RowChanged(int row) {
  if (row >= count_) return;  // the view has yet to hear of it
  const auto [first, last] = changed_.value_or(std::pair(row, row));
  changed_ = {std::min(first, row), std::max(last, row)};
  if (!wait_.isActive()) wait_.start();
}

void TableModel::ShowPending() {
  wait_.stop();
  if (const auto changed = std::exchange(changed_, std::nullopt)) {
    Q_EMIT dataChanged(index(changed->first, 0),
                       index(changed->second, columnCount(QModelIndex()) - 1));
  }
  const int count = static_cast<int>(list_.RowCount());
  if (count <= count_) return;
  beginInsertRows({}, count_, count - 1);
  count_ = count;
  endInsertRows();
}

int TableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count_; }

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(list_.Columns().size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= list_.RowCount()) return {};
  if (role == Qt::TextAlignmentRole) return Alignment(index.column());
  if (role != Qt::DisplayRole && role != kWholeText) return {};
  const QString whole = ToQString(list_.Text(row, static_cast<std::size_t>(index.column())));
  return role == kWholeText ? whole : Shown(whole);
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const auto column = static_cast<std::size_t>(section);
  if (orientation != Qt::Horizontal || column >= list_.Columns().size()) return {};
  if (role == Qt::TextAlignmentRole) return Alignment(section);
  if (role != Qt::DisplayRole) return {};
  const QString name = ToQString(list_.Columns()[column]);
  return rightAligned_.contains(section) ? name + ' ' : name;
}

QVariant TableModel::Alignment(int column) const {
  const auto side = rightAligned_.contains(column) ? Qt::AlignRight : Qt::AlignLeft;
  return {side | Qt::AlignVCenter};
}

}  // namespace tallowin::desktop
