#pragma once
// VARIANTs and objects with owners.

#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oaidl.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <cstdint>
#include <new>
#include <string_view>
#include <utility>

namespace zavhost {

using ObjectPtr = Microsoft::WRL::ComPtr<IDispatch>;

/// A VARIANT that is cleared at the end of its lifetime.
class Variant {
 public:
  Variant() noexcept { VariantInit(&variant_); }
  // NOLINTBEGIN(google-explicit-constructor): what a member can give is a variant.
  Variant(double number) noexcept : Variant() {
    variant_.vt = VT_R8;
    variant_.dblVal = number;
  }
  Variant(std::int32_t number) noexcept : Variant() {
    variant_.vt = VT_I4;
    variant_.lVal = number;
  }
  Variant(bool truth) noexcept : Variant() {
    variant_.vt = VT_BOOL;
    variant_.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Variant(std::u16string_view text) : Variant() {
    variant_.bstrVal = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                         static_cast<UINT>(text.size()));
    if (variant_.bstrVal == nullptr) throw std::bad_alloc();
    variant_.vt = VT_BSTR;
  }
  Variant(const char16_t* text) : Variant(std::u16string_view(text)) {}
  Variant(ObjectPtr object) noexcept : Variant() {
    variant_.vt = VT_DISPATCH;
    variant_.pdispVal = object.Detach();
  }
  // NOLINTEND(google-explicit-constructor)
  Variant(const Variant& other) : Variant() { *this = Variant(other.variant_); }
  /// A copy, with references followed.
  explicit Variant(const VARIANT& other) : Variant() {
    if (FAILED(VariantCopyInd(&variant_, const_cast<VARIANT*>(&other)))) throw std::bad_alloc();
  }
  Variant(Variant&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Variant& operator=(Variant other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Variant() { VariantClear(&variant_); }

  static Variant Null() noexcept {
    Variant null;
    null.variant_.vt = VT_NULL;
    return null;
  }
  static Variant Error(SCODE code) noexcept {
    Variant error;
    error.variant_.vt = VT_ERROR;
    error.variant_.scode = code;
    return error;
  }
  /// An argument that is left out.
  static Variant Missing() noexcept { return Error(DISP_E_PARAMNOTFOUND); }
  static Variant Date(double serial) noexcept {
    Variant date(serial);
    date.variant_.vt = VT_DATE;
    return date;
  }
  /// Takes the array, of VARIANTs.
  static Variant Array(SAFEARRAY* array) noexcept {
    Variant held;
    held.variant_.vt = VT_ARRAY | VT_VARIANT;
    held.variant_.parray = array;
    return held;
  }

  const VARIANT& get() const { return variant_; }
  VARIANT* address() { return &variant_; }
  VARTYPE type() const { return variant_.vt; }
  bool IsMissing() const {
    return variant_.vt == VT_ERROR && variant_.scode == DISP_E_PARAMNOTFOUND;
  }
  VARIANT Release() noexcept {
    const VARIANT released = variant_;
    VariantInit(&variant_);
    return released;
  }
  /// The text of one that holds text; empty for others.
  std::u16string_view text() const {
    if (variant_.vt != VT_BSTR || variant_.bstrVal == nullptr) return {};
    return {reinterpret_cast<const char16_t*>(variant_.bstrVal), SysStringLen(variant_.bstrVal)};
  }

 private:
  VARIANT variant_;
};

}  // namespace zavhost
