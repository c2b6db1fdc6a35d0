#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "msexcel/windows/object.h"

namespace MsExcel {

class Worksheet;

class Font : public ObjectOf<Font> {
 public:
  static constexpr std::string_view kName = "Font";
  using ObjectOf::ObjectOf;

  void SetBold(bool bold) const { Put<"Bold">(bold); }
  void SetItalic(bool italic) const { Put<"Italic">(italic); }
  void SetSize(double points) const { Put<"Size">(points); }
  /// Red in the lowest byte.
  void SetColor(long color) const { Put<"Color">(color); }
};

/// Cells of one sheet: a rectangle, or several areas.
class Range : public ObjectOf<Range> {
 public:
  static constexpr std::string_view kName = "Range";
  using ObjectOf::ObjectOf;

  /// Of the first cell, from 1.
  long Row() const { return Get<"Row">().Integer(); }
  long Column() const { return Get<"Column">().Integer(); }
  /// Of the first area.
  long RowCount() const;
  long ColumnCount() const;
  double CellCount() const { return Get<"CountLarge">().Number(); }
  long AreaCount() const;
  std::vector<Range> Areas() const;
  /// "$A$1:$B$2"; `external` puts the workbook and the sheet before it.
  std::u16string Address(bool external = false) const;

  Worksheet ParentSheet() const;
  /// The cells of an area, from 1; may lie outside.
  Range Cell(long row, long column) const { return Get<"Item">({row, column}).As<Range>(); }
  Range Offset(long rows, long columns) const { return Get<"Offset">({rows, columns}).As<Range>(); }
  Range Resized(long rows, long columns) const {
    return Get<"Resize">({rows, columns}).As<Range>();
  }
  /// The cells around it up to the next blank row and column.
  Range CurrentRegion() const { return Get<"CurrentRegion">().As<Range>(); }
  Range EntireColumn() const { return Get<"EntireColumn">().As<Range>(); }

  /// Dates and amounts as plain numbers.
  Block Values() const { return Get<"Value2">().Values(); }
  /// Of one cell.
  CellValue Value() const { return Get<"Value2">().Value(); }
  void SetValue(const CellValue& value) const { Put<"Value2">(value); }
  void SetValues(const Block& values) const { Put<"Value2">(values); }
  /// In English, A1; constants as themselves.
  Block Formulas() const { return Get<"Formula">().Values(); }
  /// A block of the range's size: formulas, constants, blank cells.
  void SetFormulas(const Block& formulas) const { Put<"Formula">(formulas); }
  /// Of one cell.
  std::u16string Formula() const { return Get<"Formula">().Text(); }
  void SetFormula(std::u16string_view formula) const { Put<"Formula">(formula); }
  /// Of at most 255 characters; it fills the range.
  void SetArrayFormula(std::u16string_view formula) const { Put<"FormulaArray">(formula); }
  std::u16string ArrayFormula() const { return Get<"FormulaArray">().Text(); }
  /// True if any cell is part of an array formula.
  bool HasArray() const;
  /// The cells of the array formula that the first cell is part of.
  Range CurrentArray() const { return Get<"CurrentArray">().As<Range>(); }
  /// Replaces a part of each formula's text.
  void ReplaceInFormulas(std::u16string_view what, std::u16string_view replacement) const;
  /// True if any cell is part of a merged one.
  bool HasMergedCells() const;

  /// Of the first cell.
  std::u16string NumberFormat() const { return Cell(1, 1).Get<"NumberFormat">().Text(); }
  void SetNumberFormat(std::u16string_view format) const { Put<"NumberFormat">(format); }
  Font CellFont() const { return Get<"Font">().As<Font>(); }
  void SetFillColor(long color) const;
  void SetColumnWidth(double characters) const { Put<"ColumnWidth">(characters); }

  double Left() const { return Get<"Left">().Number(); }
  double Top() const { return Get<"Top">().Number(); }

  void Merge() const { Call<"Merge">(); }
  void Select() const { Call<"Select">(); }
  void Clear() const { Call<"Clear">(); }
  void ClearContents() const { Call<"ClearContents">(); }
};

}  // namespace MsExcel
