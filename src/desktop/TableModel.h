// A table control as the model of a Qt view.
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <optional>
#include <set>
#include <utility>

#include "forms/ListView.h"

namespace tallowin::desktop {

/// Texts are read from the control when they are shown. What is added and changed row by row goes
/// to the view a few dozen times a second only, as a view takes about as long for one row as for
/// hundreds.
class TableModel : public QAbstractTableModel {
 public:
  /// The whole text of a cell, with its line ends; what is displayed is one line of bounded length.
  static constexpr int kWholeText = Qt::UserRole;

  TableModel(const forms::ListView& list, QObject* parent);

  void Follow(const forms::Change& change);
  /// What is waiting goes to the view now.
  void ShowPending();
  /// For numbers.
  void AlignRight(int column) { rightAligned_.insert(column); }

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  void Restart();
  void RowChanged(int row);
  [[nodiscard]] QVariant Alignment(int column) const;

  const forms::ListView& list_;
  std::set<int> rightAligned_;
  QTimer wait_;
  int count_ = 0;                               ///< rows that the view knows of
  std::optional<std::pair<int, int>> changed_;  ///< the first and the last of these
};

/// The whole text of a cell as one line without tabs.
[[nodiscard]] QString OneLine(QString text);

}  // namespace tallowin::desktop
