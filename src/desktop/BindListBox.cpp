// A list of entries on show, of which one or several can be chosen.

#include <QItemSelectionModel>
#include <QListView>
#include <vector>

#include "desktop/Binder.h"
#include "desktop/ItemListModel.h"

namespace tallowin::desktop {

namespace {

/// For each entry, whether the view has it selected.
std::vector<bool> SelectedRows(const QListView& view) {
  std::vector<bool> selected(static_cast<std::size_t>(view.model()->rowCount()));
  for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      selected[static_cast<std::size_t>(row)] = true;
    }
  }
  return selected;
}

/// As the list of the control says, with entries that lie together in one range.
QItemSelection SelectionOf(const forms::ListBox& control, const QListView& view) {
  QItemSelection selection;
  const int count = view.model()->rowCount();
  const auto isSelected = [&](int row) {
    return row < count && control.Selected(static_cast<std::size_t>(row));
  };
  for (int row = 0; row < count; ++row) {
    if (!isSelected(row)) continue;
    const int top = row;
    while (isSelected(row + 1)) ++row;
    selection.select(view.model()->index(top, 0), view.model()->index(row, 0));
  }
  return selection;
}

/// The entries that the view shows otherwise than the control has them.
std::vector<std::size_t> DifferingRows(const forms::ListBox& control, const QListView& view) {
  std::vector<std::size_t> differing;
  const std::vector<bool> selected = SelectedRows(view);
  for (std::size_t row = 0; row < selected.size(); ++row) {
    if (selected[row] != control.Selected(row)) differing.push_back(row);
  }
  return differing;
}

void ShowSelection(const forms::ListBox& control, QListView& view) {
  if (DifferingRows(control, view).empty()) return;
  view.selectionModel()->select(SelectionOf(control, view), QItemSelectionModel::ClearAndSelect);
}

/// The entries that the user has chosen, or chosen no more.
std::vector<std::size_t> ChangedByUser(const forms::ListBox& control, const QListView& view) {
  std::vector<std::size_t> changed = DifferingRows(control, view);
  // In a list that takes one, what is chosen no more goes with the choice of another.
  if (!control.TakesSeveral()) {
    std::erase_if(changed, [&](std::size_t row) { return control.Selected(row); });
  }
  return changed;
}

}  // namespace

void Binder::Bind(forms::ListBox& control, QListView& view) {
  auto* model = new ItemListModel(control, &view);
  view.setModel(model);
  view.setUniformItemSizes(true);
  view.setSelectionMode(control.TakesSeveral() ? QAbstractItemView::MultiSelection
                                               : QAbstractItemView::SingleSelection);
  BindCommon(control, view, [&control, &view, model](const forms::Change& change) {
    const bool everything = change.property == forms::Property::Everything;
    const bool items = everything || change.property == forms::Property::Items;
    if (change.property == forms::Property::AddedItem) model->ItemAdded();
    if (items) model->ItemsChanged();
    if (items || change.property == forms::Property::Value) ShowSelection(control, view);
  });
  QObject::connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, &view,
                   [this, &control, &view] {
                     const auto changed = ChangedByUser(control, view);
                     if (!changed.empty()) Deliver([&] { control.Select(changed); });
                   });
}

}  // namespace tallowin::desktop
