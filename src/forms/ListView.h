// A table: rows of texts under the captions of columns.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/Control.h"

namespace tallowin::forms {

/// Each row is an item with its text, which stands in the first column, and sub-items for the other
/// ones. Rows are counted from 0 and stand in the order in which they were added, however a front
/// end sorts them for the user's eye.
class ListView : public Control {
 public:
  ListView(Place place, std::string name, std::vector<std::string> columns)
      : Control(place, std::move(name), std::string()), columns_(std::move(columns)) {}
  [[nodiscard]] std::string_view Kind() const override { return "ListView"; }

  [[nodiscard]] const std::vector<std::string>& Columns() const { return columns_; }
  void AddColumn(std::string caption);

  [[nodiscard]] std::size_t RowCount() const { return rows_.size(); }
  /// Adds it at the end; its sub-items are empty. The result is its number.
  std::size_t AddItem(std::string text);
  /// `column` 0 is the item's text. Empty for a sub-item that was never set. Throws 35600 for a row
  /// outside the list.
  [[nodiscard]] const std::string& Text(std::size_t row, std::size_t column = 0) const;
  /// Throws 35600 for a row, 380 for a column outside the list.
  void SetSubItem(std::size_t row, std::size_t column, std::string text);
  /// The columns stay; no row is selected.
  void Clear();

  /// Nothing while no row is selected. Each new list of rows starts so.
  [[nodiscard]] std::optional<std::size_t> SelectedItem() const { return selected_; }
  /// By the user or by code: runs OnItemClick. Throws 35600 for a row outside the list.
  void Select(std::size_t row);

  std::function<void(std::size_t row)> OnItemClick;

 private:
  using Row = std::vector<std::string>;
  [[nodiscard]] const Row& At(std::size_t row) const;

  std::vector<std::string> columns_;
  std::vector<Row> rows_;
  std::optional<std::size_t> selected_;
};

}  // namespace tallowin::forms
