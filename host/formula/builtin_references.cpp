#include <cmath>
#include <utility>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/reference_algebra.h"

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
  if (held == nullptr) return call.arguments[0];
  const Array& array = **held;
  Array turned;
  turned.rows = array.columns;
  turned.columns = array.rows;
  turned.values.reserve(array.values.size());
  for (std::int32_t row = 0; row < turned.rows; ++row) {
    for (std::int32_t column = 0; column < turned.columns; ++column) {
      turned.values.push_back(array.At(column, row));
    }
  }
  return std::make_shared<const Array>(std::move(turned));
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
  for (std::size_t i = 1; i < call.arguments.size(); ++i) {
    if (i == 3 && std::holds_alternative<MissingArgument>(call.arguments[i])) break;
    const Converted<double> number = ToNumber(ScalarArgument(call, i));
    if (number.error) return {.error = number.error};
    if (number.value < 0.0) return {.error = ErrorCode::kValue};
    if (number.value > formula::kSheetRows) return {.error = ErrorCode::kRef};
    *parts[i - 1] = static_cast<std::int32_t>(number.value);
  }
  return place;
}

/// If only one position is given, it counts along a single row.
void TurnForSingleRow(IndexPlace& place, std::size_t arguments, std::int32_t rows) {
  if (arguments == 2 && rows == 1) std::swap(place.row, place.column);
}

Operand IndexReference(const Reference& reference, IndexPlace place, std::size_t arguments) {
  const auto areas = static_cast<std::int32_t>(reference.areas.size());
  if (place.area < 1 || place.area > areas) return Value(ErrorCode::kRef);
  CellRange area = reference.areas[static_cast<std::size_t>(place.area - 1)];
  TurnForSingleRow(place, arguments, area.rows());
  if (place.row > area.rows() || place.column > area.columns()) return Value(ErrorCode::kRef);
  if (place.row > 0) area.first_row = area.last_row = area.first_row + place.row - 1;
  if (place.column > 0) {
    area.first_column = area.last_column = area.first_column + place.column - 1;
  }
  return Reference{reference.sheet, {area}};
}

Operand IndexArray(const Array& array, IndexPlace place, std::size_t arguments) {
  TurnForSingleRow(place, arguments, array.rows);
  if (place.area != 1 || place.row > array.rows || place.column > array.columns) {
    return Value(ErrorCode::kRef);
  }
  const std::int32_t first_row = place.row > 0 ? place.row - 1 : 0;
  const std::int32_t first_column = place.column > 0 ? place.column - 1 : 0;
  Array part;
  part.rows = place.row > 0 ? 1 : array.rows;
  part.columns = place.column > 0 ? 1 : array.columns;
  if (part.rows == 1 && part.columns == 1) return array.At(first_row, first_column);
  for (std::int32_t row = 0; row < part.rows; ++row) {
    for (std::int32_t column = 0; column < part.columns; ++column) {
      part.values.push_back(array.At(first_row + row, first_column + column));
    }
  }
  return std::make_shared<const Array>(std::move(part));
}

Operand Index(const BuiltInCall& call) {
  const IndexPlace place = ReadIndexPlace(call);
  if (place.error) return Value(*place.error);
  const std::size_t arguments = call.arguments.size();
  const Operand& source = call.arguments[0];
  if (const Reference* reference = std::get_if<Reference>(&source)) {
    return IndexReference(*reference, place, arguments);
  }
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&source)) {
    return IndexArray(**array, place, arguments);
  }
  const Value* value = std::get_if<Value>(&source);
  if (value == nullptr) return Value(ErrorCode::kValue);
  if (value->error() != nullptr) return *value;
  return IndexArray(Array{1, 1, {*value}}, place, arguments);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"ROWS", 1, 1, "r", Rows},
    {u"COLUMNS", 1, 1, "r", Columns},
    {u"ROW", 0, 1, "r", Row},
    {u"COLUMN", 0, 1, "r", Column},
    {u"TRANSPOSE", 1, 1, "a", Transpose},
    {u"INDEX", 2, 4, "rs", Index},
};

}  // namespace

std::span<const BuiltInFunction> ReferenceFunctions() { return kFunctions; }

}  // namespace zavhost
