#include "desktop/ItemListModel.h"

#include "desktop/Text.h"

namespace tallowin::desktop {

ItemListModel::ItemListModel(const forms::ItemList& items, QObject* parent)
    : QAbstractListModel(parent), items_(items) {}

void ItemListModel::ItemAdded() {
  beginInsertRows({}, count_, count_);
  ++count_;
  endInsertRows();
}

void ItemListModel::ItemsChanged() {
  beginResetModel();
  count_ = static_cast<int>(items_.ListCount());
  endResetModel();
}

int ItemListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count_;
}

QVariant ItemListModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  const bool asText = role == Qt::DisplayRole || role == Qt::EditRole;
  if (!asText || !index.isValid() || row >= items_.ListCount()) return {};
  return ToQString(items_.List(row));
}

}  // namespace tallowin::desktop
