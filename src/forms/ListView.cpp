#include "forms/ListView.h"

#include "platform/RunTimeError.h"

namespace tallowin::forms {

void ListView::AddColumn(std::string caption) {
  columns_.push_back(std::move(caption));
  Notify({Property::Columns});
}

const ListView::Row& ListView::At(std::size_t row) const {
  if (row >= rows_.size()) {
    throw platform::RunTimeError(platform::error::kIndexOutOfBounds, "Index out of bounds");
  }
  return rows_[row];
}

std::size_t ListView::AddItem(std::string text) {
  const std::size_t row = rows_.size();
  rows_.push_back({std::move(text)});
  Notify({.property = Property::AddedItem, .row = row});
  return row;
}

const std::string& ListView::Text(std::size_t row, std::size_t column) const {
  static const std::string kNothing;
  const Row& texts = At(row);
  return column < texts.size() ? texts[column] : kNothing;
}

void ListView::SetSubItem(std::size_t row, std::size_t column, std::string text) {
  (void)At(row);
  if (column == 0 || column >= columns_.size()) {
    throw platform::RunTimeError(platform::error::kInvalidPropertyValue, "Invalid property value");
  }
  if (Text(row, column) == text) return;
  if (rows_[row].size() <= column) rows_[row].resize(column + 1);
  rows_[row][column] = std::move(text);
  Notify({.property = Property::Row, .row = row});
}

void ListView::Clear() {
  selected_.reset();
  Assign(rows_, {}, Property::Items);
}

void ListView::Select(std::size_t row) {
  (void)At(row);
  Assign(selected_, std::optional(row), Property::Value);
  if (OnItemClick) OnItemClick(row);
}

}  // namespace tallowin::forms
