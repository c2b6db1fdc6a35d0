#include "host/formula/rectangle.h"

#include <memory>
#include <utility>

namespace zavhost {

Rectangle::Rectangle(Value value)
    : source_(std::make_shared<const Array>(Array{1, 1, {std::move(value)}})) {}

Rectangle::Rectangle(ArrayPtr array)
    : source_(std::move(array)),
      rows_(std::get<ArrayPtr>(source_)->rows),
      columns_(std::get<ArrayPtr>(source_)->columns) {}

Rectangle::Rectangle(std::uint32_t sheet, const CellRange& area)
    : source_(Cells{sheet, area}), rows_(area.rows()), columns_(area.columns()) {}

Rectangle Rectangle::Slice(std::int32_t row, std::int32_t column, std::int32_t rows,
                           std::int32_t columns) const {
  if (const Cells* cells = std::get_if<Cells>(&source_)) {
    const std::int32_t top = cells->area.first_row + row;
    const std::int32_t left = cells->area.first_column + column;
    return {cells->sheet, {top, left, top + rows - 1, left + columns - 1}};
  }
  const ArrayPtr& array = std::get<ArrayPtr>(source_);
  if (rows == rows_ && columns == columns_) return Rectangle(array);
  Array part{rows, columns, {}};
  part.values.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
  for (std::int32_t r = row; r < row + rows; ++r) {
    for (std::int32_t c = column; c < column + columns; ++c) part.values.push_back(array->At(r, c));
  }
  return Rectangle(std::make_shared<const Array>(std::move(part)));
}

ArrayPtr Rectangle::Values(EvaluationContext& context, RangeExtent extent) const {
  const Cells* cells = std::get_if<Cells>(&source_);
  return cells != nullptr ? context.ReadRange(cells->sheet, cells->area, extent)
                          : std::get<ArrayPtr>(source_);
}

Operand Rectangle::Part(std::int32_t row, std::int32_t column, std::int32_t rows,
                        std::int32_t columns) const {
  const Rectangle part = Slice(row, column, rows, columns);
  if (const Cells* cells = std::get_if<Cells>(&part.source_))
    return Reference{cells->sheet, {cells->area}};
  const ArrayPtr& array = std::get<ArrayPtr>(part.source_);
  return rows == 1 && columns == 1 ? Operand(array->At(0, 0)) : Operand(array);
}

Value Rectangle::At(std::int32_t row, std::int32_t column, EvaluationContext& context) const {
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&source_)) return (*array)->At(row, column);
  const Cells& cells = std::get<Cells>(source_);
  return context.ReadCell(
      {cells.sheet, cells.area.first_row + row, cells.area.first_column + column});
}

ArrayPtr Rectangle::Row(std::int32_t row, EvaluationContext& context, RangeExtent extent) const {
  return Slice(row, 0, 1, columns_).Values(context, extent);
}

ArrayPtr Rectangle::Column(std::int32_t column, EvaluationContext& context,
                           RangeExtent extent) const {
  return Slice(0, column, rows_, 1).Values(context, extent);
}

Rectangle ReadRectangle(const BuiltInCall& call, std::size_t index, ArgumentReader& read) {
  if (const Reference* reference = read.AsReference(index)) {
    if (reference->areas.size() == 1) return {reference->sheet, reference->areas.front()};
    read.Fail(ErrorCode::kValue);
    return {};
  }
  if (read.IsOmitted(index)) return {};
  const Operand& argument = call.arguments[index];
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&argument)) return Rectangle(*array);
  const Value& value = std::get<Value>(argument);
  if (value.error() != nullptr) read.Fail(*value.error());
  return Rectangle(value);
}

}  // namespace zavhost
