#pragma once
// Matrices and vectors handed to a macro.

#include <span>

#include "numbers/double_matrix.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {

/// The lower bound of every new array that a macro gets.
inline constexpr LONG kLowerBound = 1;

/// Writes the matrix into the caller's array, column by column, as the macro language stores it. An
/// array of doubles with two dimensions and the same number of rows is kept: it gets the matrix's
/// number of columns and, for these, the lower bound; the rows keep theirs. Any other array is
/// replaced by a new one, whatever its elements. A matrix without elements changes nothing.
///
/// Throws VekArraySizeError when a service of the system fails (the array is locked, cannot be
/// resized or was not allocated by the system, or there is no memory) and VekInvalidDataType for an
/// array that cannot be read; then the caller's array is as it was.
void ReDimVbArray(const DoubleMatrix& matrix, SAFEARRAY** array, LONG lower_bound);

/// The same for a macro's VARIANT: writes into the array of doubles that it holds or refers to, or
/// else replaces its contents. VekInvalidDataType if it refers to a variable of another type.
void StoreMatrix(const DoubleMatrix& matrix, VARIANT* variant);

/// A one-dimensional array of doubles that is to replace what a VARIANT holds or refers to. The
/// constructor throws what StoreMatrix would and writes nothing; HandOver() needs no memory.
/// Without numbers or a VARIANT, HandOver() does nothing.
class PreparedVector {
 public:
  PreparedVector(std::span<const double> numbers, VARIANT* variant);
  void HandOver();

 private:
  OwnedArray array_;
  VARIANT* variant_ = nullptr;
};

/// A new VARIANT with the matrix, owned by the caller; an empty VARIANT for a matrix without
/// elements.
VARIANT VariantOf(const DoubleMatrix& matrix);

}  // namespace zavrel
