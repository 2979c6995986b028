// A list control as the model of a Qt view.
#pragma once

#include <QAbstractListModel>

#include "forms/Controls.h"

namespace tallowin::desktop {

/// Reads the texts from the control when they are shown, because a list of callers may get long.
class ItemListModel : public QAbstractListModel {
 public:
  ItemListModel(const forms::ItemList& items, QObject* parent);

  /// One was added to the end of the list.
  void ItemAdded();
  void ItemsChanged();

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  const forms::ItemList& items_;
  int count_ = 0;
};

}  // namespace tallowin::desktop
