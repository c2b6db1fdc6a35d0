#pragma once
// Cells, an array or a value as one rectangle, of which functions take parts.

#include <cstdint>
#include <variant>

#include "host/formula/argument_reader.h"

namespace zavhost {

/// One area of a reference, an array, or a value as an array of one element. A part of cells is a
/// reference again, and no cell is read before its value is needed.
class Rectangle {
 public:
  Rectangle() : Rectangle(Value()) {}
  explicit Rectangle(Value value);
  explicit Rectangle(ArrayPtr array);
  Rectangle(std::uint32_t sheet, const CellRange& area);

  std::int32_t rows() const { return rows_; }
  std::int32_t columns() const { return columns_; }
  /// True for a single row, column or element.
  bool IsVector() const { return rows_ == 1 || columns_ == 1; }
  std::int32_t length() const { return rows_ == 1 ? columns_ : rows_; }

  /// A part inside the rectangle: a reference, an array or a value.
  Operand Part(std::int32_t row, std::int32_t column, std::int32_t rows,
               std::int32_t columns) const;
  /// The value at a position.
  Value At(std::int32_t row, std::int32_t column, EvaluationContext& context) const;
  /// The values of a row or column.
  ArrayPtr Row(std::int32_t row, EvaluationContext& context, RangeExtent extent) const;
  ArrayPtr Column(std::int32_t column, EvaluationContext& context, RangeExtent extent) const;

 private:
  Rectangle Slice(std::int32_t row, std::int32_t column, std::int32_t rows,
                  std::int32_t columns) const;
  ArrayPtr Values(EvaluationContext& context, RangeExtent extent) const;

  struct Cells {
    std::uint32_t sheet;
    CellRange area;
  };
  std::variant<Cells, ArrayPtr> source_;
  std::int32_t rows_ = 1;
  std::int32_t columns_ = 1;
};

/// An argument as a rectangle. An error fails with this error, a reference with several areas with
/// #VALUE!.
Rectangle ReadRectangle(const BuiltInCall& call, std::size_t index, ArgumentReader& read);

}  // namespace zavhost
