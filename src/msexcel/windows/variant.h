#pragma once
// Values on their way to and from Excel.

#include <concepts>
#include <string_view>
#include <utility>

#include "msexcel/cell_value.h"
#include "platform/windows/ole_owners.h"

namespace MsExcel {

class Object;

template <class Type>
concept Integer = std::integral<Type> && !std::same_as<Type, bool>;

/// Owns a VARIANT, made of what a call passes. Throws std::bad_alloc.
class Variant {
 public:
  Variant() { VariantInit(&variant_); }
  // NOLINTBEGIN(google-explicit-constructor): arguments are written as what they are.
  Variant(Integer auto number) : Variant() {
    variant_.vt = VT_I4;
    variant_.lVal = static_cast<LONG>(number);
  }
  Variant(std::same_as<bool> auto flag) : Variant() {
    variant_.vt = VT_BOOL;
    variant_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Variant(double number) : Variant() {
    variant_.vt = VT_R8;
    variant_.dblVal = number;
  }
  Variant(std::u16string_view text);
  Variant(const std::u16string& text) : Variant(std::u16string_view(text)) {}
  Variant(const char16_t* text) : Variant(std::u16string_view(text)) {}
  Variant(const Object& object);
  Variant(const CellValue& value);
  /// A 2-dimensional array; a block of one cell is its value.
  Variant(const Block& block);
  // NOLINTEND(google-explicit-constructor)
  /// An optional argument that is left out while another one follows.
  static Variant Missing();

  Variant(Variant&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Variant() { VariantClear(&variant_); }

  VARIANT* address() { return &variant_; }
  const VARIANT& get() const { return variant_; }

 private:
  VARIANT variant_;
};

/// The value of a cell; of what no cell holds, a blank one. A date counts as its number, and an
/// amount of currency too.
CellValue ValueIn(const VARIANT& variant);
/// Of a 2-dimensional array of VARIANTs, or of a single value. No rows if it is any other array.
Block BlockIn(const VARIANT& variant);

}  // namespace MsExcel
