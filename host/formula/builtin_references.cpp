#include <algorithm>
#include <string>
#include <utility>

#include "formula/notation.h"
#include "host/formula/array_parts.h"
#include "host/formula/builtin_groups.h"
#include "host/formula/elementwise.h"
#include "host/formula/rectangle.h"
#include "host/formula/text_reference.h"

namespace zavhost {
namespace {

/// The number of rows or columns of a reference with one area, an array or a value.
Operand Extent(const Operand& operand, bool of_rows) {
  if (const Reference* reference = std::get_if<Reference>(&operand)) {
    if (reference->areas.size() != 1) return Value(ErrorCode::kRef);
    const CellRange& area = reference->areas.front();
    return Value(static_cast<double>(of_rows ? area.rows() : area.columns()));
  }
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand)) {
    return Value(static_cast<double>(of_rows ? (*array)->rows : (*array)->columns));
  }
  const Value* value = std::get_if<Value>(&operand);
  if (value == nullptr) return Value(ErrorCode::kValue);
  return value->error() != nullptr ? *value : Value(1.0);
}

Operand Rows(const BuiltInCall& call) { return Extent(call.arguments[0], true); }
Operand Columns(const BuiltInCall& call) { return Extent(call.arguments[0], false); }

/// The one-based position of the caller or of a reference: its first row in a normal cell, or all
/// its rows as a column in an array formula; likewise for columns.
Operand Place(const BuiltInCall& call, bool of_rows) {
  const bool has_argument =
      !call.arguments.empty() && !std::holds_alternative<MissingArgument>(call.arguments[0]);
  if (!has_argument) {
    const CellAddress caller = call.context.caller();
    return Value((of_rows ? caller.row : caller.column) + 1.0);
  }
  const Reference* reference = std::get_if<Reference>(&call.arguments[0]);
  if (reference == nullptr) {
    const Value* value = std::get_if<Value>(&call.arguments[0]);
    return value != nullptr && value->error() != nullptr ? *value : Value(ErrorCode::kValue);
  }
  if (reference->areas.size() != 1) return Value(ErrorCode::kRef);
  const CellRange& area = reference->areas.front();
  const std::int32_t first = of_rows ? area.first_row : area.first_column;
  const std::int32_t count = of_rows ? area.rows() : area.columns();
  if (!call.as_array || count == 1) return Value(first + 1.0);
  Array array;
  (of_rows ? array.rows : array.columns) = count;
  array.values.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) array.values.emplace_back(first + i + 1.0);
  return std::make_shared<const Array>(std::move(array));
}

Operand Row(const BuiltInCall& call) { return Place(call, true); }
Operand Column(const BuiltInCall& call) { return Place(call, false); }

Operand Transpose(const BuiltInCall& call) {
  const ArrayPtr* held = std::get_if<ArrayPtr>(&call.arguments[0]);
  return held != nullptr ? Transposed(*held) : call.arguments[0];
}

/// The position in INDEX: one-based, 0 for a whole row or column.
struct IndexPlace {
  std::int32_t row = 0;
  std::int32_t column = 0;
  std::int32_t area = 1;
  std::optional<ErrorCode> error;
};

IndexPlace ReadIndexPlace(const BuiltInCall& call) {
  IndexPlace place;
  std::int32_t* const parts[] = {&place.row, &place.column, &place.area};
  for (std::size_t i = 1; i < std::min<std::size_t>(call.arguments.size(), 4); ++i) {
    if (i == 3 && std::holds_alternative<MissingArgument>(call.arguments[i])) break;
    const Converted<double> number = ToNumber(ScalarArgument(call, i));
    if (number.error) return {.error = number.error};
    if (number.value < 0.0) return {.error = ErrorCode::kValue};
    if (number.value > formula::kSheetRows) return {.error = ErrorCode::kRef};
    *parts[i - 1] = static_cast<std::int32_t>(number.value);
  }
  return place;
}

/// The area of a reference, or the array, from which INDEX takes a part.
Rectangle ReadIndexed(const BuiltInCall& call, std::int32_t area, ArgumentReader& read) {
  const Reference* reference = read.AsReference(0);
  const auto areas =
      reference != nullptr ? static_cast<std::int32_t>(reference->areas.size()) : std::int32_t{1};
  read.Require(area >= 1 && area <= areas, ErrorCode::kRef);
  if (reference == nullptr || read.failed()) return ReadRectangle(call, 0, read);
  return {reference->sheet, reference->areas[static_cast<std::size_t>(area - 1)]};
}

Operand Index(const BuiltInCall& call) {
  ArgumentReader read(call);
  IndexPlace place = ReadIndexPlace(call);
  if (place.error) return Value(*place.error);
  const Rectangle source = ReadIndexed(call, place.area, read);
  // If only one position is given, it counts along a single row.
  if (call.arguments.size() == 2 && source.rows() == 1) std::swap(place.row, place.column);
  read.Require(place.row <= source.rows() && place.column <= source.columns(), ErrorCode::kRef);
  if (read.failed()) return read.failure();
  return source.Part(std::max(place.row - 1, 0), std::max(place.column - 1, 0),
                     place.row > 0 ? 1 : source.rows(), place.column > 0 ? 1 : source.columns());
}

/// The first and last coordinate of OFFSET in one direction. A negative length extends backwards.
struct Stretch {
  double first;
  double last;

  Stretch(double start, double length)
      : first(length > 0.0 ? start : start + length + 1.0),
        last(length > 0.0 ? start + length - 1.0 : start) {}
  bool IsWithin(double size) const { return first <= last && first >= 0.0 && last < size; }
};

Operand Offset(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Reference* reference = read.AsReference(0);
  if (reference == nullptr) {
    const Value value = read.Any(0);
    return value.error() != nullptr ? value : Value(ErrorCode::kValue);
  }
  if (reference->areas.size() != 1) return Value(ErrorCode::kValue);
  const CellRange& area = reference->areas.front();
  const double row = area.first_row + read.Whole(1);
  const double column = area.first_column + read.Whole(2);
  const double height = read.IsOmitted(3) ? area.rows() : read.Whole(3);
  const double width = read.IsOmitted(4) ? area.columns() : read.Whole(4);
  const Stretch rows(row, height);
  const Stretch columns(column, width);
  read.Require(height != 0.0 && width != 0.0 && rows.IsWithin(formula::kSheetRows) &&
                   columns.IsWithin(formula::kSheetColumns),
               ErrorCode::kRef);
  if (read.failed()) return read.failure();
  return Reference{
      reference->sheet,
      {{static_cast<std::int32_t>(rows.first), static_cast<std::int32_t>(columns.first),
        static_cast<std::int32_t>(rows.last), static_cast<std::int32_t>(columns.last)}}};
}

Operand Indirect(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const bool is_a1 = read.Boolean(1, true);
  if (read.failed()) return read.failure();
  return is_a1 ? ReferenceFromText(text, call.context) : ReferenceFromR1C1(text, call.context);
}

/// What `of_cell` gives for the first cell of a reference, or for each of its cells in an array
/// formula; #VALUE! for what is no reference.
template <typename OfCell>
Operand ForCells(const BuiltInCall& call, const OfCell& of_cell) {
  const ArgumentReader read(call);
  const Reference* reference = read.AsReference(0);
  if (reference == nullptr || reference->areas.size() != 1) {
    const Value value = reference == nullptr ? read.Any(0) : Value();
    return value.error() != nullptr ? value : Value(ErrorCode::kValue);
  }
  const CellRange& area = reference->areas.front();
  if (!call.as_array || area.IsSingleCell())
    return of_cell(CellAddress{reference->sheet, area.first_row, area.first_column});
  if (static_cast<double>(area.rows()) * area.columns() > kLargestMadeArray)
    return Value(ErrorCode::kValue);
  Spread spread;
  spread.rows = area.rows();
  spread.columns = area.columns();
  spread.is_array = true;
  return FillSpread(spread, [&](std::int32_t row, std::int32_t column) {
    return of_cell(CellAddress{reference->sheet, area.first_row + row, area.first_column + column});
  });
}

Operand FormulaText(const BuiltInCall& call) {
  return ForCells(call, [&call](const CellAddress& cell) {
    const auto text = call.context.FormulaText(cell);
    // Excel gives #N/A beyond its limit of a formula with its "=".
    if (!text || text->size() >= formula::kLongestFormula) return Value(ErrorCode::kNA);
    return Value(std::u16string_view(u"=" + *text));
  });
}

Operand IsFormula(const BuiltInCall& call) {
  return ForCells(call, [&call](const CellAddress& cell) {
    return Value(call.context.FormulaText(cell).has_value());
  });
}

/// The number of the caller's sheet, of a reference's, or of the one that a text names.
Operand SheetNumber(const BuiltInCall& call) {
  ArgumentReader read(call);
  if (read.IsOmitted(0)) return Value(call.context.caller().sheet + 1.0);
  if (const Reference* reference = read.AsReference(0)) return Value(reference->sheet + 1.0);
  const std::u16string name = read.Text(0);
  if (read.failed()) return read.failure();
  const auto sheet = call.context.workbook().FindSheet(name);
  return sheet ? Value(*sheet + 1.0) : Value(ErrorCode::kNA);
}

Operand Sheets(const BuiltInCall& call) {
  const ArgumentReader read(call);
  if (!read.IsGiven(0)) return Value(static_cast<double>(call.context.workbook().sheets.size()));
  if (read.AsReference(0) != nullptr) return Value(1.0);
  const Value value = read.Any(0);
  return value.error() != nullptr ? value : Value(ErrorCode::kValue);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"ROWS", 1, 1, "r", Rows},
    {u"COLUMNS", 1, 1, "r", Columns},
    {u"ROW", 0, 1, "r", Row},
    {u"COLUMN", 0, 1, "r", Column},
    {u"TRANSPOSE", 1, 1, "a", Transpose},
    {u"INDEX", 2, 4, "xs", Index},
    {u"OFFSET", 3, 5, "rs", Offset},
    {u"INDIRECT", 1, 2, "s", Indirect},
    {u"FORMULATEXT", 1, 1, "r", FormulaText},
    {u"ISFORMULA", 1, 1, "r", IsFormula},
    {u"SHEET", 0, 1, "r", SheetNumber},
    {u"SHEETS", 0, 1, "r", Sheets},
};

}  // namespace

std::span<const BuiltInFunction> ReferenceFunctions() { return kFunctions; }

}  // namespace zavhost
