#pragma once
// How the cells of a sheet look.

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "host/workbook/cell_names.h"
#include "host/workbook/value.h"

namespace zavhost {

/// Excel's constants that stand for what a new cell has.
inline constexpr std::int32_t kAutomaticColour = -4105;
inline constexpr std::int32_t kNoPattern = -4142;
inline constexpr std::int32_t kSolidPattern = 1;
inline constexpr std::int32_t kGeneralAlignment = 1;

/// Colours are as Excel has them: red + 256 * green + 65536 * blue.
struct CellStyle {
  std::u16string number_format = u"General";
  std::u16string font = u"Calibri";
  double size = 11;
  bool is_bold = false;
  bool is_italic = false;
  std::int32_t font_colour = 0;
  std::int32_t fill_colour = 0xFFFFFF;
  std::int32_t pattern = kNoPattern;
  std::int32_t alignment = kGeneralAlignment;
  bool wraps = false;
  bool is_locked = true;

  bool operator==(const CellStyle&) const = default;
};

/// The styles of a sheet: of the whole sheet, of columns, of rows and of cells. A later one holds
/// where an earlier one does too, so that a style for whole columns takes no memory for each cell.
class CellStyles {
 public:
  using Change = std::function<void(CellStyle&)>;
  using Visit = std::function<void(const CellStyle&)>;

  const CellStyle& At(std::int32_t row, std::int32_t column) const;
  /// Changes the style of every cell of the range.
  void Apply(const CellRange& range, const Change& change);
  /// Every style that a cell of the range has; some more than once.
  void ForEach(const CellRange& range, const Visit& visit) const;
  /// Of a column without regard to its cells; null if it is that of the sheet.
  const CellStyle* OfColumn(std::int32_t column) const;
  /// The cells with styles of their own.
  const std::map<CellPosition, CellStyle>& cells() const { return cells_; }
  const std::map<std::int32_t, CellStyle>& columns() const { return columns_; }
  const std::map<std::int32_t, CellStyle>& rows() const { return rows_; }

 private:
  void ApplyToColumns(const CellRange& range, const Change& change);
  void ApplyToRows(const CellRange& range, const Change& change);

  CellStyle sheet_;
  std::map<std::int32_t, CellStyle> columns_;
  std::map<std::int32_t, CellStyle> rows_;
  std::map<CellPosition, CellStyle> cells_;
};

}  // namespace zavhost
