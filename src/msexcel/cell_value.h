#pragma once
// Values of cells as Excel's object model exchanges them.

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "platform/variant_copies.h"

namespace MsExcel {

/// An error value by Excel's number: 7 for #DIV/0!, 42 for #N/A.
struct ErrorValue {
  int number = 0;
  bool operator==(const ErrorValue&) const = default;
};

/// A blank cell, a number, a truth value, a text or an error.
using CellValue = std::variant<std::monostate, double, bool, std::u16string, ErrorValue>;

/// The values of a rectangle of cells, row by row.
struct Block {
  Block() = default;
  Block(std::size_t row_count, std::size_t column_count)
      : rows(row_count), columns(column_count), values(row_count * column_count) {}

  CellValue& At(std::size_t row, std::size_t column) { return values[row * columns + column]; }
  const CellValue& At(std::size_t row, std::size_t column) const {
    return values[row * columns + column];
  }

  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<CellValue> values;
};

}  // namespace MsExcel
