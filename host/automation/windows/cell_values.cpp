#include "host/automation/windows/cell_values.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace zavhost {
namespace {

Variant ElementAt(SAFEARRAY* array, LONG* indices) {
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  Variant element;
  void* const place = type == VT_VARIANT ? static_cast<void*>(element.address())
                                         : static_cast<void*>(&element.address()->llVal);
  if (FAILED(SafeArrayGetElement(array, indices, place))) RefuseType();
  if (type != VT_VARIANT) element.address()->vt = type;
  return element;
}

std::int32_t LengthOf(SAFEARRAY* array, UINT dimension, LONG& first) {
  LONG last = 0;
  if (FAILED(SafeArrayGetLBound(array, dimension, &first)) ||
      FAILED(SafeArrayGetUBound(array, dimension, &last)))
    RefuseType();
  return std::max<LONG>(last - first + 1, 0);
}

struct ArrayDestroyer {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using ArrayOwner = std::unique_ptr<SAFEARRAY, ArrayDestroyer>;

ArrayOwner NewArray(UINT dimensions, SAFEARRAYBOUND* bounds) {
  ArrayOwner array(SafeArrayCreate(VT_VARIANT, dimensions, bounds));
  if (!array) throw std::bad_alloc();
  return array;
}

}  // namespace

Variant VariantOf(const Value& value) {
  if (const double* number = value.number()) return *number;
  if (const bool* boolean = value.boolean()) return *boolean;
  if (const std::u16string* text = value.text()) return std::u16string_view(*text);
  if (const ErrorCode* error = value.error()) {
    const std::uint32_t code = kErrorBase + static_cast<std::uint32_t>(*error);
    return Variant::Error(static_cast<SCODE>(code));
  }
  return {};
}

Value ValueIn(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE;
    case VT_ERROR: {
      const std::uint32_t code = static_cast<std::uint32_t>(variant.scode) - kErrorBase;
      const auto error = static_cast<ErrorCode>(code);
      // Whatever else stands for a failure is #N/A for a cell.
      return code <= static_cast<std::uint32_t>(ErrorCode::kCalc) ? error : ErrorCode::kNA;
    }
    default: {
      Variant number(variant);
      if (number.type() == VT_DISPATCH || number.type() == VT_BSTR ||
          FAILED(VariantChangeType(number.address(), number.address(), 0, VT_R8)))
        RefuseType();
      if (!std::isfinite(number.get().dblVal)) Refuse();
      return number.get().dblVal;
    }
  }
}

Value ValueFromEntry(std::u16string_view text) {
  if (text.empty()) return {};
  if (text.starts_with(u'\'')) return Value(text.substr(1));
  if (EqualIgnoringCase(text, u"TRUE")) return true;
  if (EqualIgnoringCase(text, u"FALSE")) return false;
  if (const auto error = ErrorFromText(text)) return *error;
  if (const auto number = NumberFromText(text)) return *number;
  if (text.size() > kLongestText) Refuse();
  return Value(text);
}

const Variant* VariantBlock::At(std::int32_t row, std::int32_t column) const {
  if (rows == 1) row = 0;
  if (columns == 1) column = 0;
  if (row >= rows || column >= columns) return nullptr;
  return &elements[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                   static_cast<std::size_t>(column)];
}

VariantBlock BlockIn(const VARIANT& variant) {
  VariantBlock block;
  if ((variant.vt & VT_ARRAY) == 0) {
    block.elements.emplace_back(variant);
    return block;
  }
  SAFEARRAY* const array = variant.parray;
  const UINT dimensions = array == nullptr ? 0 : SafeArrayGetDim(array);
  if (dimensions < 1 || dimensions > 2) RefuseType();
  LONG first[2] = {0, 0};
  if (dimensions == 2) block.rows = LengthOf(array, 1, first[0]);
  block.columns = LengthOf(array, dimensions, first[dimensions - 1]);
  if (block.rows == 0 || block.columns == 0) RefuseType();
  for (std::int32_t row = 0; row < block.rows; ++row) {
    for (std::int32_t column = 0; column < block.columns; ++column) {
      LONG indices[2] = {first[0] + row, first[1] + column};
      if (dimensions == 1) indices[0] = first[0] + column;
      block.elements.push_back(ElementAt(array, indices));
    }
  }
  return block;
}

Variant ArrayOf(std::int32_t rows, std::int32_t columns,
                const std::function<Variant(std::int32_t, std::int32_t)>& element) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
  ArrayOwner array = NewArray(2, bounds);
  // Column by column, as it is stored.
  auto* place = static_cast<VARIANT*>(array->pvData);
  for (std::int32_t column = 0; column < columns; ++column) {
    for (std::int32_t row = 0; row < rows; ++row) *place++ = element(row, column).Release();
  }
  return Variant::Array(array.release());
}

Variant VectorOf(std::size_t count, const std::function<Variant(std::size_t)>& element) {
  SAFEARRAYBOUND bounds{static_cast<ULONG>(count), 1};
  ArrayOwner array = NewArray(1, &bounds);
  auto* const place = static_cast<VARIANT*>(array->pvData);
  for (std::size_t i = 0; i < count; ++i) place[i] = element(i).Release();
  return Variant::Array(array.release());
}

}  // namespace zavhost
