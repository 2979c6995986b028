#include "desktop/TableOrder.h"

namespace tallowin::desktop {

namespace {

std::optional<qlonglong> Number(const QString& text) {
  bool isNumber = false;
  const qlonglong number = text.toLongLong(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

/// The keys are dropped ahead of the sorting that the same change brings about: connections are
/// served in the order in which they were made.
void TableOrder::setSourceModel(QAbstractItemModel* model) {
  const auto forget = [this] { keys_.clear(); };
  connect(model, &QAbstractItemModel::modelReset, this, forget);
  connect(model, &QAbstractItemModel::dataChanged, this, forget);
  connect(model, &QAbstractItemModel::rowsInserted, this, forget);
  connect(model, &QAbstractItemModel::rowsRemoved, this, forget);
  QSortFilterProxyModel::setSourceModel(model);
}

/// A cell is compared some twenty times while a large table is sorted.
const TableOrder::Key& TableOrder::KeyOf(const QModelIndex& cell) const {
  if (cell.column() != column_) keys_.clear();
  column_ = cell.column();
  const auto known = keys_.find(cell.row());
  if (known != keys_.end()) return known->second;
  const QString text = cell.data().toString();
  return keys_.emplace(cell.row(), Key{Number(text), collator_.sortKey(text)}).first->second;
}

bool TableOrder::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  const Key& one = KeyOf(left);
  const Key& other = KeyOf(right);
  if (one.number && other.number) return *one.number < *other.number;
  if (one.number || other.number) return one.number.has_value();
  return one.text.compare(other.text) < 0;
}

}  // namespace tallowin::desktop
