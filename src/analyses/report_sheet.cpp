#include "analyses/report_sheet.h"

#include <algorithm>

namespace zavrel::analyses {
namespace {

std::string ColumnName(std::uint16_t column) {
  std::string name;
  for (int rest = column + 1; rest > 0; rest = (rest - 1) / 26)
    name.insert(name.begin(), static_cast<char>('A' + (rest - 1) % 26));
  return name;
}

std::string CellName(std::uint32_t row, std::uint16_t column) {
  return "$" + ColumnName(column) + "$" + std::to_string(row + 1);
}

/// A name that is neither a cell's nor a number needs no quotes.
bool IsPlain(const std::string& sheet) {
  const auto is_letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return sheet.size() > 3 && std::ranges::all_of(sheet, is_letter);
}

std::string Quoted(const std::string& sheet) {
  if (IsPlain(sheet)) return sheet;
  std::string quoted = "'";
  for (const char c : sheet) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

}  // namespace

Area Area::Part(std::uint32_t from_row, std::uint16_t from_column, std::uint32_t part_rows,
                std::uint16_t part_columns) const {
  return {sheet, row + from_row, static_cast<std::uint16_t>(column + from_column), part_rows,
          part_columns};
}

std::string Area::Column() const { return ColumnName(column); }

std::string Area::TextInSheet() const {
  std::string text = CellName(row, column);
  if (rows > 1 || columns > 1)
    text += ":" + CellName(row + rows - 1, static_cast<std::uint16_t>(column + columns - 1));
  return text;
}

std::string Area::Text() const { return Quoted(sheet) + "!" + TextInSheet(); }

}  // namespace zavrel::analyses
