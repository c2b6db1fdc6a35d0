#pragma once
// Matrices and vectors handed to a macro.

#include <span>

#include "macros/windows/ole_owners.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// Lower bound of every array that a macro gets.
inline constexpr LONG kLowerBound = 1;

/// Puts the matrix into the caller's array: one of doubles with two dimensions and as many rows
/// keeps its memory and gets as many columns; otherwise a new array takes its place. Stored column
/// by column, as the macro language does. A matrix without elements leaves everything as it is.
///
/// Throws VekArraySizeError when a service of the system fails (an array that is locked, that
/// cannot change its size or whose data were not allocated by the system, no memory),
/// VekInvalidDataType for an array of another type of element, and leaves the caller's array as it
/// was.
void ReDimVbArray(const DoubleMatrix& matrix, SAFEARRAY** array, LONG lower_bound);

/// The same into a macro's VARIANT: into the array that it holds or refers to, if it is one of
/// doubles; else in the place of what it holds. VekInvalidDataType when it refers to a variable of
/// another type.
void StoreMatrix(const DoubleMatrix& matrix, VARIANT* variant);

/// Numbers as a one-dimensional array of doubles, to go into the place of what a VARIANT holds or
/// refers to. Making it throws all that StoreMatrix would, while nothing is written yet; handing it
/// over needs no memory. No numbers or no VARIANT: there is nothing to hand over.
class PreparedVector {
 public:
  PreparedVector(std::span<const double> numbers, VARIANT* variant);
  void HandOver();

 private:
  OwnedArray array_;
  VARIANT* variant_ = nullptr;
};

/// The matrix as a VARIANT of its own; the caller owns it.
VARIANT VariantOf(const DoubleMatrix& matrix);

}  // namespace zavrel
