#pragma once
// The values of cells in VARIANTs.

#include <functional>

#include "host/automation/windows/automation_error.h"
#include "host/automation/windows/variant.h"
#include "host/workbook/value.h"

namespace zavhost {

/// The automation status of an error value is this base plus Excel's number of the error, 2000 plus
/// its code in the C API.
inline constexpr std::uint32_t kErrorBase = 0x800A0000u + 2000;

/// What Value2 gives of a cell.
Variant VariantOf(const Value& value);
/// What a cell gets from a VARIANT that is no text: blanks for empty ones and nulls. Throws
/// DISP_E_TYPEMISMATCH for what no cell holds.
Value ValueIn(const VARIANT& variant);
/// What a text becomes that is entered into a cell and is no formula.
Value ValueFromEntry(std::u16string_view text);

/// The elements of an array in a VARIANT, row by row; a one-dimensional one is a row. Throws
/// DISP_E_TYPEMISMATCH for arrays of more dimensions.
struct VariantBlock {
  std::int32_t rows = 1;
  std::int32_t columns = 1;
  std::vector<Variant> elements;

  /// The element for a cell at this place: a single row or column repeats; nothing beyond the
  /// block.
  const Variant* At(std::int32_t row, std::int32_t column) const;
};
VariantBlock BlockIn(const VARIANT& variant);

/// A two-dimensional array, based at 1.
Variant ArrayOf(std::int32_t rows, std::int32_t columns,
                const std::function<Variant(std::int32_t row, std::int32_t column)>& element);
/// The same with one dimension.
Variant VectorOf(std::size_t count, const std::function<Variant(std::size_t index)>& element);

}  // namespace zavhost
