#pragma once
// Series of numbers in arrays of the macro language.
//
// A macro declares such a parameter as `ByRef values() As Double`. It arrives as the address of the
// array's pointer (a null pointer while the array has no elements yet):
//
//   Declare PtrSafe Function ZavrelMeanVB Lib "ZavrelFuncs8_x64.xll" _
//       (ByRef values() As Double, ByRef result As Double) As Integer

#include <memory>
#include <optional>
#include <span>

#include "data/array_accessor.h"
#include "macros/macro_status.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {

/// The numbers in a one-dimensional array of 8-byte doubles, in place. The array stays locked
/// during the lifetime of this object.
class VbNumbers {
 public:
  explicit VbNumbers(SAFEARRAY** array);

  /// False for no array, an array of another type or rank, or one that cannot be locked. An array
  /// without elements is ok.
  bool ok() const { return numbers_.has_value(); }
  std::span<const double> values() const { return numbers_->values(); }

 private:
  SafeArrayLock lock_;
  std::optional<RawMemoryArrayAccessor> numbers_;
};

/// Memory for `count` numbers, or null when there is none.
std::unique_ptr<double[]> TryAllocate(std::size_t count);
/// A copy of the numbers, or null when there is no memory for it.
std::unique_ptr<double[]> TryCopy(std::span<const double> numbers);

}  // namespace zavrel
