// Shows a table control: sorted at wish, columns as wide as their content.
#pragma once

#include <QTreeView>
#include <set>
#include <vector>

#include "desktop/Binder.h"
#include "forms/ListView.h"

namespace tallowin::desktop {

class TableModel;
class TableOrder;

/// A click on a column's header sorts by it, a second one the other way round, and a third one goes
/// back to the order of the table, which itself never changes. The row that is selected, by the
/// mouse or by the keyboard, is selected in the control; another click on it is a click of the
/// control as well. Binder::Bind ties it to its control.
class TableView : public QTreeView {
 public:
  TableView(forms::ListView& control, Binder& binder, QWidget* parent);

  /// For a column of numbers.
  void AlignRight(int column);
  void Follow(const forms::Change& change);

 protected:
  bool viewportEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event) const override;

 private:
  void SetLook();
  void SetHeader();
  void AddCopy();
  void FitAll();
  void Fit(int first, int last);
  void FitColumn(int column, int first, int last);
  void Select(const QModelIndex& index);
  void ShowSelection();
  void CopyRow() const;
  [[nodiscard]] bool IsCutOff(const QModelIndex& index) const;

  forms::ListView& control_;
  Binder& binder_;
  TableModel* model_;
  TableOrder* order_;
  std::vector<int> widths_;    ///< of the texts in each column, the widest
  std::set<int> sizedByUser_;  ///< columns
  bool fitting_ = false;
  bool showingSelection_ = false;
  bool selectedByPress_ = false;
};

}  // namespace tallowin::desktop
