#pragma once
// Owners of OLE Automation's resources, so that nothing leaks on any path.

#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oaidl.h>
#include <oleauto.h>

#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace zavrel {

/// A VARIANT that is cleared at the end of its lifetime.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&variant_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  OwnedVariant(OwnedVariant&& other) noexcept : variant_(other.variant_) {
    VariantInit(&other.variant_);
  }
  ~OwnedVariant() { VariantClear(&variant_); }

  VARIANT* address() { return &variant_; }
  const VARIANT& get() const { return variant_; }

 private:
  VARIANT variant_;
};

/// Owns a new automation string until it is handed over. Throws std::bad_alloc if it cannot be
/// made.
class OwnedBstr {
 public:
  /// Wide text, as in VARIANTs and in Automation's own strings.
  static OwnedBstr Wide(std::u16string_view text) {
    return OwnedBstr(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                       static_cast<UINT>(text.size())));
  }
  /// Bytes of the ANSI code page, as for a macro's `As String`. A character that the code page
  /// lacks becomes a substitute, usually "?".
  static OwnedBstr Ansi(std::u16string_view text);

  OwnedBstr(const OwnedBstr&) = delete;
  OwnedBstr& operator=(const OwnedBstr&) = delete;
  OwnedBstr(OwnedBstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  ~OwnedBstr() { SysFreeString(text_); }

  BSTR Release() { return std::exchange(text_, nullptr); }
  /// Puts the string into the caller's place and frees the old one.
  void HandOver(BSTR* place) {
    SysFreeString(*place);
    *place = Release();
  }

 private:
  explicit OwnedBstr(BSTR text) : text_(text) {
    if (text_ == nullptr) throw std::bad_alloc();
  }

  BSTR text_;
};

/// Keeps a SAFEARRAY locked. The lock of a null or unlockable array is not ok().
class SafeArrayLock {
 public:
  explicit SafeArrayLock(SAFEARRAY* array)
      : array_(array != nullptr && SUCCEEDED(::SafeArrayLock(array)) ? array : nullptr) {}
  SafeArrayLock(const SafeArrayLock&) = delete;
  SafeArrayLock& operator=(const SafeArrayLock&) = delete;
  ~SafeArrayLock() {
    if (array_ != nullptr) SafeArrayUnlock(array_);
  }

  bool ok() const { return array_ != nullptr; }
  const SAFEARRAY& array() const { return *array_; }
  void* data() const { return array_->pvData; }

 private:
  SAFEARRAY* array_;
};

/// Owns an array until it is handed over.
class OwnedArray {
 public:
  explicit OwnedArray(SAFEARRAY* array = nullptr) : array_(array) {}
  OwnedArray(OwnedArray&& other) noexcept : array_(other.Release()) {}
  OwnedArray& operator=(OwnedArray&& other) noexcept {
    std::swap(array_, other.array_);
    return *this;
  }
  ~OwnedArray() {
    if (array_ != nullptr) SafeArrayDestroy(array_);
  }
  SAFEARRAY* get() const { return array_; }
  SAFEARRAY* Release() { return std::exchange(array_, nullptr); }

 private:
  SAFEARRAY* array_;
};

/// The system's functions take non-const pointers to VARIANTs that they only read.
inline VARIANT* Unconst(const VARIANT& variant) { return const_cast<VARIANT*>(&variant); }

/// The text of a wide BSTR; empty for null.
inline std::u16string_view BstrView(BSTR text) {
  return {reinterpret_cast<const char16_t*>(text), text == nullptr ? 0 : SysStringLen(text)};
}

/// The locale for late-bound calls. Excel refuses a locale whose language pack it does not have,
/// such as a German user's in an English Excel; it always has this one.
inline constexpr LCID kCallLocale =
    MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

}  // namespace zavrel
