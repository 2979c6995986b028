// The order in which the rows of a table are shown.
#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>
#include <optional>
#include <unordered_map>

namespace tallowin::desktop {

/// Whole numbers come by their value, ahead of all texts; texts as in a dictionary of the user's
/// language. Equal cells keep the order of the table.
class TableOrder : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

  void setSourceModel(QAbstractItemModel* model) override;

 protected:
  [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

 private:
  struct Key {
    std::optional<qlonglong> number;
    QCollatorSortKey text;
  };
  const Key& KeyOf(const QModelIndex& cell) const;

  QCollator collator_;
  mutable std::unordered_map<int, Key> keys_;  ///< by row; until the table changes
  mutable int column_ = -1;                    ///< whose keys these are
};

}  // namespace tallowin::desktop
