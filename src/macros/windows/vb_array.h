#pragma once
// Arrays between the companion macro add-in and the library.

#include <cstdint>

#include "excel/xxloper.h"
#include "macros/windows/ole_owners.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// Status of an automation error that stands for an Excel error: this base plus Excel's code.
inline constexpr std::uint32_t kExcelErrorStatus = 0x800A07D0u;

/// The value of Excel that a VARIANT stands for: numbers of every kind, dates and currency become
/// numbers, an automation error its Excel error, empty, null and omitted an empty value; what Excel
/// has no value for becomes #VALUE!.
XXloper ExcelValueOf(const VARIANT& variant);

/// The matrix in a two-dimensional array of doubles (first index the row, stored column by column).
/// An array without elements is a matrix without rows.
///
/// Throws VekArraySizeError ("VB array is not 2-dimensional") for any other rank or no array, and
/// with another text for one without the memory that its bounds promise; VekOutOfMemory;
/// VekInvalidDataType for elements that are no 8-byte doubles. Other types are refused, not
/// converted: a macro's `Dim r() As Variant` or `() As Long` would be matrices by accident, and
/// what is stored back could not go into them.
DoubleMatrix MatrixFromVbArray(SAFEARRAY* array);

/// The block of cell values in an array: one of doubles by MatrixFromVbArray, one of any other
/// simple type element by element; a one-dimensional array is one row, as Excel writes it.
XXloper CellBlockFromVbArray(SAFEARRAY* array);

}  // namespace zavrel
