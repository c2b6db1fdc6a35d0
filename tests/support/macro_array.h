#pragma once
// An array as a macro passes it.

#include <doctest/doctest.h>
#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oaidl.h>
#include <oleauto.h>

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

#include "numbers/double_matrix.h"

namespace zavrel::tests {

/// An array of a macro's; nobody may leave it locked.
struct MacroArray {
  MacroArray() = default;
  MacroArray(VARTYPE type, const std::vector<ULONG>& sizes) {
    std::vector<SAFEARRAYBOUND> bounds;
    bounds.reserve(sizes.size());
    for (const ULONG size : sizes) bounds.push_back({size, 0});
    array = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    REQUIRE(array != nullptr);
  }
  MacroArray(std::initializer_list<double> series)
      : MacroArray(VT_R8, {static_cast<ULONG>(series.size())}) {
    std::copy(series.begin(), series.end(), static_cast<double*>(array->pvData));
  }
  MacroArray(const DoubleMatrix& rows)  // NOLINT(google-explicit-constructor)
      : MacroArray(VT_R8, {static_cast<ULONG>(rows.size()), static_cast<ULONG>(rows[0].size())}) {
    auto* next = static_cast<double*>(array->pvData);
    for (std::size_t column = 0; column < rows[0].size(); ++column)
      for (const auto& row : rows) *next++ = row[column];
  }
  /// An array of doubles with bounds and no memory for elements.
  static MacroArray Hollow(const std::vector<ULONG>& sizes) {
    MacroArray hollow;
    const auto dimensions = static_cast<UINT>(sizes.size());
    REQUIRE(SUCCEEDED(SafeArrayAllocDescriptorEx(VT_R8, dimensions, &hollow.array)));
    for (UINT d = 0; d < dimensions; ++d)
      hollow.array->rgsabound[dimensions - 1 - d] = {sizes[d], 0};
    return hollow;
  }
  MacroArray(MacroArray&& other) noexcept : array(std::exchange(other.array, nullptr)) {}
  MacroArray(const MacroArray&) = delete;
  MacroArray& operator=(const MacroArray&) = delete;
  ~MacroArray() {
    if (array == nullptr) return;
    CHECK(array->cLocks == 0);
    CHECK(SUCCEEDED(SafeArrayDestroy(array)));
  }
  template <class Element>
  Element* elements() const {
    return static_cast<Element*>(array->pvData);
  }
  operator SAFEARRAY**() { return &array; }  // NOLINT(google-explicit-constructor)

  SAFEARRAY* array = nullptr;
};

}  // namespace zavrel::tests
