#include "analysis/ListViewMod.h"

#include <utility>

#include "analysis/InvalidProcedureCall.h"
#include "core/LineRoutines.h"

namespace tallowin::analysis {
namespace {

constexpr std::string_view kEndOfRow = "\r\n";

/// Takes the next cell and the tab behind it off the front of `line`.
std::string TakeCell(std::string_view& line) {
  const auto tab = line.find('\t');
  if (tab == std::string_view::npos) throw InvalidProcedureCall();
  std::string cell(line.substr(0, tab));
  line.remove_prefix(tab + 1);
  return cell;
}

void PutSubItem(forms::ListView& list, std::size_t row, std::size_t column, std::string text) {
  if (list.Columns().size() <= column) list.AddColumn(std::to_string(column));
  list.SetSubItem(row, column, std::move(text));
}

void AddRow(forms::ListView& list, std::string_view line) {
  const std::size_t row = list.AddItem(TakeCell(line));
  std::size_t column = 1;
  for (; line.find('\t') != std::string_view::npos; ++column) {
    PutSubItem(list, row, column, TakeCell(line));
  }
  PutSubItem(list, row, column, std::string(line));
}

}  // namespace

std::string CellText(std::string_view text) {
  constexpr const char* kDigits = "0123456789abcdef";
  constexpr unsigned char kFirstPrintable = 0x20;
  constexpr unsigned char kDelete = 0x7F;
  std::string cell;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= kFirstPrintable && byte != kDelete) {
      cell += c;
    } else {
      cell.append("\\x").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
    }
  }
  return cell;
}

std::string LVToString(const forms::ListView& list) {
  std::string text;
  for (std::size_t row = 0; row < list.RowCount(); ++row) {
    text += CellText(list.Text(row));
    for (std::size_t column = 1; column < list.Columns().size(); ++column) {
      text += '\t' + CellText(list.Text(row, column));
    }
    text += kEndOfRow;
  }
  return text.empty() ? "Error LVToString" : text;
}

std::string LVFromString(forms::ListView& list, std::string& text) {
  try {
    while (text.ends_with(kEndOfRow)) text.resize(text.size() - kEndOfRow.size());
    list.Clear();
    for (const std::string& line : core::AllLines(text)) AddRow(list, line);
    return {};
  } catch (const std::exception& failure) {
    const platform::RunTimeError error = platform::AsRunTimeError(failure);
    return "LVFromString Error " + error.Description() + " " + std::to_string(error.Number());
  }
}

}  // namespace tallowin::analysis
