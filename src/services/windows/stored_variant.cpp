#include "services/windows/stored_variant.h"

#include <cstring>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "macros/macro_memory.h"
#include "macros/windows/macro_variant.h"
#include "macros/windows/redim_vb_array.h"
#include "macros/windows/vb_array.h"

namespace zavrel::services {
namespace {

[[noreturn]] void ThrowInvalid() {
  throw VekInvalidDataType("StoredVariant", messages::kMessageInvalidDataType);
}

Bytes BytesIn(SAFEARRAY* array) {
  const SafeArrayLock lock(array);
  if (!lock.ok() || SafeArrayGetDim(array) != 1) ThrowInvalid();
  const std::size_t size = lock.array().rgsabound[0].cElements;
  const auto* const first = static_cast<const std::byte*>(lock.data());
  if (size > kMostItemBytes || (size > 0 && !IsReadableMemory(first, size))) ThrowInvalid();
  return {first, first + size};
}

VARIANT ArrayOf(const Bytes& bytes) {
  OwnedArray array(SafeArrayCreateVector(VT_UI1, 1, static_cast<ULONG>(bytes.size())));
  {
    const SafeArrayLock lock(array.get());
    if (!lock.ok()) throw std::bad_alloc();
    if (!bytes.empty()) std::memcpy(lock.data(), bytes.data(), bytes.size());
  }
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_ARRAY | VT_UI1;
  variant.parray = array.Release();
  return variant;
}

struct ToVariant {
  VARIANT operator()(const std::u16string& text) const {
    VARIANT variant;
    VariantInit(&variant);
    variant.bstrVal = OwnedBstr::Wide(text).Release();
    variant.vt = VT_BSTR;
    return variant;
  }
  VARIANT operator()(double number) const {
    VARIANT variant;
    VariantInit(&variant);
    variant.vt = VT_R8;
    variant.dblVal = number;
    return variant;
  }
  VARIANT operator()(const DoubleMatrix& matrix) const { return VariantOf(matrix); }
  VARIANT operator()(const Bytes& bytes) const { return ArrayOf(bytes); }
};

}  // namespace

StoredItem ItemIn(const VARIANT* variant) {
  const std::optional<OwnedVariant> value = CopyOf(variant);
  if (!value) ThrowInvalid();
  switch (value->get().vt) {
    case VT_BSTR:
      return std::u16string(BstrView(value->get().bstrVal));
    case VT_ARRAY | VT_R8:
      return MatrixFromVbArray(value->get().parray);
    case VT_ARRAY | VT_UI1:
      return BytesIn(value->get().parray);
    case VT_R8:
    case VT_R4:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_UI1:
    case VT_DATE:
    case VT_CY:
    case VT_DECIMAL: {
      OwnedVariant number;
      if (FAILED(VariantChangeType(number.address(), Unconst(value->get()), 0, VT_R8)))
        ThrowInvalid();
      return number.get().dblVal;
    }
    default:
      ThrowInvalid();
  }
}

void StoreItem(const std::optional<StoredItem>& item, VARIANT* variant) {
  auto* const place = const_cast<VARIANT*>(FollowReference(variant));
  if (!IsPlaceFor(place)) ThrowInvalid();
  VARIANT stored;
  VariantInit(&stored);
  if (item) stored = std::visit(ToVariant{}, *item);
  VariantClear(place);
  *place = stored;
}

}  // namespace zavrel::services
