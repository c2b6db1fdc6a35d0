#include "macros/windows/vb_array.h"

#include <cmath>
#include <cstring>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "excel/double_value.h"
#include "macros/macro_memory.h"
#include "macros/windows/double_array.h"
#include "macros/windows/macro_variant.h"

namespace zavrel {
namespace {

struct Extent {
  std::size_t rows;
  std::size_t columns;
};

std::size_t ElementsIn(SAFEARRAY* array, UINT dimension) {
  LONG lower = 0;
  LONG upper = -1;
  if (FAILED(SafeArrayGetLBound(array, dimension, &lower)) ||
      FAILED(SafeArrayGetUBound(array, dimension, &upper))) {
    return 0;
  }
  return upper < lower ? 0 : static_cast<std::size_t>(static_cast<long long>(upper) - lower + 1);
}

/// The size of an element of a simple automation type; 0 for other types.
std::size_t SimpleElementSize(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY:
      return 8;
    case VT_BSTR:
      return sizeof(BSTR);
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

/// A VARIANT that borrows element `index` of a locked array; never cleared.
VARIANT BorrowElement(const void* data, VARTYPE type, std::size_t size, std::size_t index) {
  VARIANT element;
  const auto* at = static_cast<const unsigned char*>(data) + size * index;
  if (type == VT_VARIANT) {
    std::memcpy(&element, at, sizeof element);
    return element;
  }
  VariantInit(&element);
  element.vt = type;
  std::memcpy(&element.llVal, at, size);
  return element;
}

Extent BlockExtent(SAFEARRAY* array) {
  const UINT dimensions = array == nullptr ? 0 : SafeArrayGetDim(array);
  if (dimensions != 1 && dimensions != 2) {
    throw VekArraySizeError("CellBlockFromVbArray", messages::kMessageArrayNotTwoDimensional);
  }
  Extent extent{1, ElementsIn(array, dimensions)};
  if (dimensions == 2) extent.rows = ElementsIn(array, 1);
  if (extent.rows == 0 || extent.columns == 0 || extent.rows > kExcelRows ||
      extent.columns > kExcelColumns) {
    throw VekArraySizeError("CellBlockFromVbArray", messages::kMessageArraySizeError);
  }
  return extent;
}

XXloper BlockOfNumbers(const DoubleMatrix& matrix) {
  XXloperArray block(static_cast<std::int32_t>(matrix.size()),
                     static_cast<std::int32_t>(matrix[0].size()));
  std::size_t index = 0;
  for (const std::vector<double>& row : matrix) {
    for (const double number : row) {
      if (std::isfinite(number))
        block.SetNumber(index++, number);
      else
        block.Set(index++, ToExcelValue(number).record());
    }
  }
  return std::move(block).Finish();
}

}  // namespace

XXloper ExcelValueOf(const VARIANT& value) {
  if ((value.vt & VT_BYREF) != 0) {
    const auto copy = CopyOf(&value);
    return copy ? ExcelValueOf(copy->get()) : XXloper::Error(ExcelError::kValue);
  }
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return XXloper::Nil();
    case VT_BSTR:
      return XXloper::Text(BstrView(value.bstrVal));
    case VT_BOOL:
      return XXloper::Boolean(value.boolVal != VARIANT_FALSE);
    case VT_ERROR: {
      if (value.scode == DISP_E_PARAMNOTFOUND) return XXloper::Nil();
      const std::uint32_t code = static_cast<std::uint32_t>(value.scode) - kExcelErrorStatus;
      return code <= xlerrCalc ? XXloper::ErrorByCode(static_cast<std::int32_t>(code))
                               : XXloper::Error(ExcelError::kValue);
    }
    default:
      break;
  }
  OwnedVariant number;
  if ((value.vt & VT_ARRAY) != 0 || value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN ||
      FAILED(VariantChangeType(number.address(), Unconst(value), 0, VT_R8))) {
    return XXloper::Error(ExcelError::kValue);
  }
  return ToExcelValue(number.get().dblVal);
}

DoubleMatrix MatrixFromVbArray(SAFEARRAY* array) {
  if (array == nullptr || SafeArrayGetDim(array) != 2) {
    throw VekArraySizeError("MatrixFromVbArray", messages::kMessageArrayNotTwoDimensional);
  }
  if (!HoldsDoubles(array))
    throw VekInvalidDataType("MatrixFromVbArray", messages::kMessageInvalidDataType);
  const std::size_t rows = ElementsIn(array, 1);
  const std::size_t columns = ElementsIn(array, 2);
  if (rows == 0 || columns == 0) return {};
  // Checked before the rows are made: the bounds may claim any number of elements.
  if (!HasItsElements(array))
    throw VekArraySizeError("MatrixFromVbArray", messages::kMessageArraySizeError);
  const SafeArrayLock lock(array);
  if (!lock.ok())
    throw VekArraySizeError("MatrixFromVbArray", messages::kMessageArrayServiceFailed);
  DoubleMatrix matrix(rows, std::vector<double>(columns));
  const auto* element = static_cast<const double*>(lock.data());
  for (std::size_t column = 0; column < columns; ++column) {
    for (std::size_t row = 0; row < rows; ++row) matrix[row][column] = *element++;
  }
  return matrix;
}

XXloper CellBlockFromVbArray(SAFEARRAY* array) {
  if (array != nullptr && SafeArrayGetDim(array) == 2 && HoldsDoubles(array)) {
    BlockExtent(array);  // throws if there are more than a sheet has
    return BlockOfNumbers(MatrixFromVbArray(array));
  }
  const Extent extent = BlockExtent(array);
  VARTYPE type = VT_EMPTY;
  if (HoldsDoubles(array))
    type = VT_R8;
  else if (FAILED(SafeArrayGetVartype(array, &type)))
    type = VT_EMPTY;
  const std::size_t size = SimpleElementSize(type);
  if (size == 0 || SafeArrayGetElemsize(array) != size) {
    throw VekInvalidDataType("CellBlockFromVbArray", messages::kMessageInvalidDataType);
  }
  if (!IsReadableMemory(array->pvData, size * extent.rows * extent.columns))
    throw VekArraySizeError("CellBlockFromVbArray", messages::kMessageArraySizeError);
  const SafeArrayLock lock(array);
  if (!lock.ok())
    throw VekArraySizeError("CellBlockFromVbArray", messages::kMessageArrayServiceFailed);
  XXloperArray block(static_cast<std::int32_t>(extent.rows),
                     static_cast<std::int32_t>(extent.columns));
  for (std::size_t row = 0; row < extent.rows; ++row) {
    for (std::size_t column = 0; column < extent.columns; ++column) {
      const VARIANT element = BorrowElement(lock.data(), type, size, column * extent.rows + row);
      block.Set(row * extent.columns + column, ExcelValueOf(element).record());
    }
  }
  return std::move(block).Finish();
}

}  // namespace zavrel
