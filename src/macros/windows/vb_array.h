#pragma once
// Arrays exchanged between the companion macro add-in and the library.

#include <cstdint>

#include "excel/xxloper.h"
#include "numbers/double_matrix.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {

/// The automation status of an Excel error is this base plus Excel's code.
inline constexpr std::uint32_t kExcelErrorStatus = 0x800A07D0u;

/// The Excel value for a VARIANT. Numbers of every kind, dates and currency become numbers (a
/// double that stands for an error or a blank becomes that), an automation error its Excel error,
/// and empty, null and omitted an empty value. Anything that Excel has no value for becomes
/// #VALUE!.
XXloper ExcelValueOf(const VARIANT& value);

/// The matrix in a two-dimensional array of doubles (the first index is the row; stored column by
/// column). An array without elements gives a matrix without rows.
///
/// Throws VekArraySizeError ("VB array is not 2-dimensional") for no array or another rank, and
/// with another text if the array lacks the memory that its bounds claim or cannot be locked;
/// VekInvalidDataType for elements that are not 8-byte doubles; std::bad_alloc. Other types are
/// refused, not converted: a macro's `Dim r() As Variant` or `() As Long` would be a matrix only by
/// accident, and a result could not be stored back into it.
DoubleMatrix MatrixFromVbArray(SAFEARRAY* array);

/// The block of cell values in an array: a matrix of doubles is read by MatrixFromVbArray, an array
/// of any other simple type element by element. A one-dimensional array is one row, as Excel writes
/// it. Doubles that stand for an error or a blank (numbers/error_double.h) become that.
XXloper CellBlockFromVbArray(SAFEARRAY* array);

}  // namespace zavrel
