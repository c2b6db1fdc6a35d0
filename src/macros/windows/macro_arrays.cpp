#include "macros/macro_arrays.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "macros/macro_memory.h"
#include "macros/windows/vb_array.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {
namespace {

VARIANT* VariantAt(std::uint64_t address) { return reinterpret_cast<VARIANT*>(address); }

/// True for the types of which a VARIANT can hold a value or an array.
bool IsVariantType(VARTYPE type) {
  switch (type) {
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_ERROR:
    case VT_BOOL:
    case VT_VARIANT:
    case VT_UNKNOWN:
    case VT_DECIMAL:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_RECORD:
      return true;
    default:
      return false;
  }
}

/// Checks beforehand whether VariantClear would succeed: if it fails, the system may leave a locked
/// array in a VARIANT that it has already marked as empty.
bool CanBeCleared(const VARIANT& variant) {
  constexpr VARTYPE kFlags = VT_ARRAY | VT_BYREF;
  if (variant.vt == VT_EMPTY || variant.vt == VT_NULL) return true;
  const auto type = static_cast<VARTYPE>(variant.vt & ~kFlags);
  if (!IsVariantType(type)) return false;
  if ((variant.vt & VT_BYREF) != 0) return true;  // the VARIANT does not own what it refers to
  if ((variant.vt & VT_ARRAY) == 0) return type != VT_VARIANT;
  const SAFEARRAY* array = variant.parray;
  return array == nullptr || (IsWritableMemory(array, sizeof *array) && array->cLocks == 0);
}

bool MayBeWritten(std::uint64_t address) {
  return address % alignof(VARIANT) == 0 && IsWritableMemory(VariantAt(address), sizeof(VARIANT)) &&
         CanBeCleared(*VariantAt(address));
}

bool LieApart(std::uint64_t a, std::uint64_t b) {
  return a == 0 || b == 0 || std::max(a, b) - std::min(a, b) >= sizeof(VARIANT);
}

bool MayBeWritten(std::span<const MacroArray> arrays) {
  for (std::size_t i = 0; i < arrays.size(); ++i) {
    if (arrays[i].address != 0 && !MayBeWritten(arrays[i].address)) return false;
    for (std::size_t j = 0; j < i; ++j) {
      if (!LieApart(arrays[i].address, arrays[j].address)) return false;
    }
  }
  return true;
}

void SetElement(VARIANT& element, const SingleValue& cell) {
  switch (cell.tag) {
    case CellTag::kNumber:
      element.vt = VT_R8;
      element.dblVal = cell.number;
      break;
    case CellTag::kText:
      element.bstrVal = OwnedBstr::Wide(cell.text).Release();
      element.vt = VT_BSTR;
      break;
    case CellTag::kBoolean:
      element.vt = VT_BOOL;
      element.boolVal = cell.code != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case CellTag::kError: {
      const std::uint32_t status = kExcelErrorStatus + static_cast<std::uint32_t>(cell.code);
      element.vt = VT_ERROR;
      element.scode = static_cast<SCODE>(status);
      break;
    }
    case CellTag::kInteger: {
      using Limits = std::numeric_limits<SHORT>;
      element.vt = VT_I2;
      element.iVal =
          static_cast<SHORT>(std::clamp<std::int32_t>(cell.code, Limits::min(), Limits::max()));
      break;
    }
    case CellTag::kBlank:
    case CellTag::kMissing:
      break;  // a new element is empty
  }
}
void SetElement(BSTR& element, const std::u16string& text) {
  element = OwnedBstr::Wide(text).Release();
}
void SetElement(double& element, double number) { element = number; }
void SetElement(LONG& element, std::int32_t integer) { element = integer; }

/// Makes an array in an empty VARIANT. The VARIANT owns the array while it is filled, even if
/// filling fails.
class ArrayMaker {
 public:
  explicit ArrayMaker(VARIANT& place) : place_(place) {}

  void operator()(std::monostate) const {}
  void operator()(const std::vector<SingleValue>& cells) const { Make<VARIANT>(VT_VARIANT, cells); }
  void operator()(const std::vector<std::u16string>& texts) const { Make<BSTR>(VT_BSTR, texts); }
  void operator()(const std::vector<double>& numbers) const { Make<double>(VT_R8, numbers); }
  void operator()(const std::vector<std::int32_t>& integers) const { Make<LONG>(VT_I4, integers); }

 private:
  template <class Element, class Source>
  void Make(VARTYPE type, const std::vector<Source>& sources) const {
    SAFEARRAYBOUND bound{static_cast<ULONG>(sources.size()), 1};
    place_.parray = SafeArrayCreate(type, 1, &bound);
    if (place_.parray == nullptr) throw std::bad_alloc();
    place_.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    const SafeArrayLock lock(place_.parray);
    if (!lock.ok()) throw std::bad_alloc();
    auto* element = static_cast<Element*>(lock.data());
    for (const Source& source : sources) SetElement(*element++, source);
  }

  VARIANT& place_;
};

}  // namespace

bool WriteMacroArrays(std::span<const MacroArray> arrays) {
  if (arrays.size() > kMostMacroArrays || !MayBeWritten(arrays)) return false;
  std::array<OwnedVariant, kMostMacroArrays> contents;
  for (std::size_t i = 0; i < arrays.size(); ++i) {
    if (arrays[i].address != 0) std::visit(ArrayMaker(*contents[i].address()), arrays[i].elements);
  }
  // The old contents are released last, when everything is in place: one VARIANT may be an element
  // in the other's contents, and released objects may run code.
  for (std::size_t i = 0; i < arrays.size(); ++i) {
    if (arrays[i].address != 0) std::swap(*VariantAt(arrays[i].address), *contents[i].address());
  }
  return true;
}

}  // namespace zavrel
