#pragma once
// Excel's value records as a test writes them down.

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "excel/xxloper.h"
#include "platform/variant_copies.h"

namespace zavrel::tests {

struct ErrorCell {
  std::int32_t code;
};
/// What a cell holds.
using Cell = std::variant<std::monostate, double, std::u16string, bool, ErrorCell>;

/// A value that owns what hangs on it.
class Argument {
 public:
  explicit Argument(const Cell& cell) { Set(record_, cell); }
  explicit Argument(std::uint32_t type) { record_.xltype = type; }
  /// An array, row by row; without cells a blank one.
  Argument(std::int32_t rows, std::int32_t columns, const std::vector<Cell>& cells = {});
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;

  /// An element of an array, from 0.
  void SetElement(std::size_t index, const Cell& cell) { Set(elements_[index], cell); }
  operator const XLOPER12*() const { return &record_; }  // NOLINT(google-explicit-constructor)

 private:
  void Set(XLOPER12& record, const Cell& cell);

  XLOPER12 record_{};
  std::vector<XLOPER12> elements_;
  std::vector<std::vector<XCHAR>> texts_;
};

/// A reference: on the calling sheet, or of any number of areas on a sheet by its id.
class Reference {
 public:
  explicit Reference(const XLREF12& area);
  Reference(std::uint64_t sheet, const std::vector<XLREF12>& areas);
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  operator const XLOPER12*() const { return &record_; }  // NOLINT(google-explicit-constructor)

 private:
  std::vector<XLMREF12> areas_;
  XLOPER12 record_{};
};

/// Rows and columns from 0, ends included.
constexpr XLREF12 Area(std::int32_t first_row, std::int32_t last_row, std::int32_t first_column,
                       std::int32_t last_column) {
  return {first_row, last_row, first_column, last_column};
}
constexpr XLREF12 WholeColumns(std::int32_t first, std::int32_t last) {
  return {0, kExcelRows - 1, first, last};
}
constexpr XLREF12 WholeRows(std::int32_t first, std::int32_t last) {
  return {first, last, 0, kExcelColumns - 1};
}

/// What a cell shows for a result: "2.5", "#42" for an error, "text", "TRUE", nothing for an empty
/// value; of an array "1,2;3,4;".
std::string Shown(const XLOPER12& value);

}  // namespace zavrel::tests
