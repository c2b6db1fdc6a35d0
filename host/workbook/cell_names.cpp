#include "host/workbook/cell_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

namespace zavhost {
std::u16string A1Text(const CellRange& range) {
  if (range.IsSingleCell()) return A1Text(range.first_row, range.first_column);
  if (range.HasAllRows())
    return ColumnLetters(range.first_column) + u":" + ColumnLetters(range.last_column);
  if (range.HasAllColumns())
    return Utf16FromUtf8(fmt::format("{}:{}", range.first_row + 1, range.last_row + 1));
  return A1Text(range.first_row, range.first_column) + u":" +
         A1Text(range.last_row, range.last_column);
}

std::optional<CellPosition> ParseCellName(std::string_view text) {
  const auto skip_dollar = [&text] {
    if (!text.empty() && text.front() == '$') text.remove_prefix(1);
  };
  std::int32_t column = 0;
  skip_dollar();
  while (!text.empty() && ((text.front() | 0x20) >= 'a' && (text.front() | 0x20) <= 'z')) {
    column = column * 26 + ((text.front() | 0x20) - 'a' + 1);
    if (column > kSheetColumns) return std::nullopt;
    text.remove_prefix(1);
  }
  std::int32_t row = 0;
  skip_dollar();
  if (text.empty()) return std::nullopt;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    row = row * 10 + (digit - '0');
    if (row > kSheetRows) return std::nullopt;
  }
  if (row == 0 || column == 0) return std::nullopt;
  return CellPosition{row - 1, column - 1};
}

std::u16string QuotedSheetName(std::u16string_view name) {
  const auto is_plain = [](char16_t unit) {
    return unit == u'.' || (formula::IsNamePart(unit) && unit != u'\\' && unit != u'?');
  };
  const bool is_word = name.empty() || (formula::IsNameStart(name[0]) &&
                                        std::all_of(name.begin(), name.end(), is_plain));
  if (is_word && !formula::ScanA1(name)) return std::u16string(name);
  std::u16string quoted = u"'";
  for (const char16_t unit : name) quoted.append(unit == u'\'' ? 2 : 1, unit);
  return quoted + u"'";
}

std::optional<CellRange> ParseRangeName(std::string_view text) {
  const std::size_t colon = text.find(':');
  const std::optional<CellPosition> first = ParseCellName(text.substr(0, colon));
  const std::optional<CellPosition> last =
      colon == std::string_view::npos ? first : ParseCellName(text.substr(colon + 1));
  if (!first || !last) return std::nullopt;
  return CellRange{std::min(first->row, last->row), std::min(first->column, last->column),
                   std::max(first->row, last->row), std::max(first->column, last->column)};
}

}  // namespace zavhost
