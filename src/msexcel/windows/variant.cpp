#include "msexcel/windows/variant.h"

#include <new>

#include "msexcel/windows/object.h"

namespace MsExcel {
namespace {

/// Excel's number of an error stands in the low word of the automation error, above this.
constexpr SCODE kFirstError = static_cast<SCODE>(0x800A07D0);

/// Nothing, if it is no number; what a reference leads to is not looked at.
CellValue AsNumber(const VARIANT& variant) {
  if ((variant.vt & (VT_BYREF | VT_ARRAY)) != 0) return {};
  zavrel::OwnedVariant number;
  if (FAILED(VariantChangeType(number.address(), zavrel::Unconst(variant), 0, VT_R8))) return {};
  return number.get().dblVal;
}

SAFEARRAY* NewArray(const Block& block) {
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(block.rows), 1},
                              {static_cast<ULONG>(block.columns), 1}};
  SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array == nullptr) throw std::bad_alloc();
  return array;
}

}  // namespace

Variant::Variant(std::u16string_view text) : Variant() {
  variant_.bstrVal = zavrel::OwnedBstr::Wide(text).Release();
  variant_.vt = VT_BSTR;
}

Variant::Variant(const Object& object) : Variant() {
  variant_.vt = VT_DISPATCH;
  variant_.pdispVal = object.get();
  if (variant_.pdispVal != nullptr) variant_.pdispVal->AddRef();
}

Variant::Variant(const CellValue& value) : Variant() {
  if (const auto* number = std::get_if<double>(&value)) {
    *this = Variant(*number);
  } else if (const auto* flag = std::get_if<bool>(&value)) {
    *this = Variant(*flag);
  } else if (const auto* text = std::get_if<std::u16string>(&value)) {
    *this = Variant(*text);
  } else if (const auto* error = std::get_if<ErrorValue>(&value)) {
    variant_.vt = VT_ERROR;
    variant_.scode = kFirstError + error->number;
  }
}

Variant::Variant(const Block& block) : Variant() {
  if (block.values.size() == 1) {
    *this = Variant(block.values.front());
    return;
  }
  zavrel::OwnedArray array(NewArray(block));
  {
    const zavrel::SafeArrayLock lock(array.get());
    if (!lock.ok()) throw std::bad_alloc();
    auto* const elements = static_cast<VARIANT*>(lock.data());
    for (std::size_t row = 0; row < block.rows; ++row) {
      for (std::size_t column = 0; column < block.columns; ++column) {
        Variant value(block.At(row, column));
        std::swap(elements[column * block.rows + row], *value.address());
      }
    }
  }
  variant_.vt = VT_ARRAY | VT_VARIANT;
  variant_.parray = array.Release();
}

Variant Variant::Missing() {
  Variant missing;
  missing.variant_.vt = VT_ERROR;
  missing.variant_.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

CellValue ValueIn(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE;
    case VT_BSTR:
      return std::u16string(zavrel::BstrView(variant.bstrVal));
    case VT_ERROR:
      return ErrorValue{static_cast<int>(variant.scode - kFirstError)};
    case VT_EMPTY:
    case VT_NULL:
    case VT_DISPATCH:
      return {};
    default:
      return AsNumber(variant);
  }
}

Block BlockIn(const VARIANT& variant) {
  if ((variant.vt & VT_ARRAY) == 0) {
    Block single(1, 1);
    single.values.front() = ValueIn(variant);
    return single;
  }
  if (variant.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(variant.parray) != 2) return {};
  const zavrel::SafeArrayLock lock(variant.parray);
  if (!lock.ok()) return {};
  // The array notes its bounds from the last dimension to the first.
  Block block(lock.array().rgsabound[1].cElements, lock.array().rgsabound[0].cElements);
  const auto* const elements = static_cast<const VARIANT*>(lock.data());
  for (std::size_t row = 0; row < block.rows; ++row) {
    for (std::size_t column = 0; column < block.columns; ++column)
      block.At(row, column) = ValueIn(elements[column * block.rows + row]);
  }
  return block;
}

}  // namespace MsExcel
