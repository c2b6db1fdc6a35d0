#pragma once
// A VARIANT of a macro's, and what it holds.

#include <doctest/doctest.h>
#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oaidl.h>
#include <oleauto.h>

#include <cstdio>
#include <string>

#include "platform/utf.h"

namespace zavrel::tests {

struct MacroVariant {
  MacroVariant() = default;
  explicit MacroVariant(VARIANT given) : variant(given) {}
  explicit MacroVariant(const wchar_t* text) {
    variant.vt = VT_BSTR;
    variant.bstrVal = SysAllocString(text);
  }
  ~MacroVariant() { CHECK(SUCCEEDED(VariantClear(&variant))); }
  MacroVariant(const MacroVariant&) = delete;
  MacroVariant& operator=(const MacroVariant&) = delete;
  operator VARIANT*() { return &variant; }  // NOLINT(google-explicit-constructor)

  VARIANT variant{};
};

/// A VARIANT of a type with a pointer for its content.
inline VARIANT VariantOf(int type, void* content = nullptr) {
  VARIANT variant{};
  variant.vt = static_cast<VARTYPE>(type);
  variant.byref = content;
  return variant;
}
/// A VARIANT that refers to another.
inline VARIANT ReferenceTo(VARIANT* other) { return VariantOf(VT_BYREF | VT_VARIANT, other); }

/// The bytes of a string that a macro was given; it goes with the macro.
inline std::string Taken(BSTR text) {
  std::string bytes(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  SysFreeString(text);
  return bytes;
}

/// "numbers 2.5;-1;", "integers 1;2;", "texts a;b;" or "values 2.5;a;TRUE;error 2042;;short 7;" of
/// an array, which nobody may leave locked and which counts from 1; "text a"; nothing when empty.
inline std::string Held(const VARIANT& variant) {
  const auto text_of = [](BSTR text) {
    return Utf8FromUtf16({reinterpret_cast<const char16_t*>(text), SysStringLen(text)});
  };
  const auto number = [](double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.12g", value);
    return std::string(text);
  };
  switch (variant.vt) {
    case VT_EMPTY:
      return {};
    case VT_R8:
      return number(variant.dblVal);
    case VT_I2:
      return "short " + std::to_string(variant.iVal);
    case VT_BOOL:
      return variant.boolVal == VARIANT_TRUE ? "TRUE" : variant.boolVal == 0 ? "FALSE" : "neither";
    case VT_ERROR:
      return "error " + std::to_string(variant.scode & 0xFFFF);
    case VT_BSTR:
      return "text " + text_of(variant.bstrVal);
    default:
      break;
  }
  if ((variant.vt & VT_ARRAY) == 0) return "of type " + std::to_string(variant.vt);
  const SAFEARRAY& array = *variant.parray;
  CHECK((array.cDims == 1 && array.rgsabound[0].lLbound == 1 && array.cLocks == 0));
  const auto listed = [&]<class Element>(std::string shown, const Element*, auto one) {
    for (ULONG i = 0; i < array.rgsabound[0].cElements; ++i)
      shown += one(static_cast<const Element*>(array.pvData)[i]) + ';';
    return shown;
  };
  switch (variant.vt & ~VT_ARRAY) {
    case VT_R8:
      return listed("numbers ", static_cast<const double*>(nullptr), number);
    case VT_I4:
      return listed("integers ", static_cast<const LONG*>(nullptr),
                    [](LONG value) { return std::to_string(value); });
    case VT_BSTR:
      return listed("texts ", static_cast<const BSTR*>(nullptr), text_of);
    case VT_VARIANT:
      return listed("values ", static_cast<const VARIANT*>(nullptr), [&](const VARIANT& value) {
        return value.vt == VT_BSTR ? text_of(value.bstrVal) : Held(value);
      });
    default:
      return "array of type " + std::to_string(variant.vt);
  }
}

}  // namespace zavrel::tests
