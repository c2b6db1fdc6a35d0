#include "macros/windows/redim_vb_array.h"

#include <cstring>
#include <limits>
#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "macros/macro_memory.h"
#include "macros/windows/double_array.h"
#include "macros/windows/macro_variant.h"

namespace zavrel {
namespace {

constexpr const char* kPlace = "ReDimVbArray";

[[noreturn]] void ThrowService() {
  throw VekArraySizeError(kPlace, messages::kMessageArrayServiceFailed);
}

[[noreturn]] void ThrowUnfit() {
  throw VekInvalidDataType(kPlace, messages::kMessageInvalidDataType);
}

/// Owns a new array; throws if there was no memory for it.
OwnedArray Made(SAFEARRAY* array) {
  if (array == nullptr) ThrowService();
  return OwnedArray(array);
}

ULONG CountOf(std::size_t count) {
  if (count > std::numeric_limits<LONG>::max() / sizeof(double)) ThrowService();
  return static_cast<ULONG>(count);
}

/// True when the system allocated the array, may free or resize it, and it is not locked.
bool IsOurs(SAFEARRAY* array) {
  constexpr USHORT kBound = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  return (array->fFeatures & kBound) == 0 && array->cLocks == 0;
}

bool IsEmpty(const DoubleMatrix& matrix) { return matrix.empty() || matrix[0].empty(); }

/// Writes the elements column by column.
void Fill(const DoubleMatrix& matrix, SAFEARRAY* array) {
  const SafeArrayLock lock(array);
  if (!lock.ok()) ThrowService();
  auto* next = static_cast<double*>(lock.data());
  for (std::size_t column = 0; column < matrix[0].size(); ++column) {
    for (const std::vector<double>& row : matrix) *next++ = row[column];
  }
}

OwnedArray NewArray(const DoubleMatrix& matrix, LONG lower_bound) {
  // The first bound here is the first dimension of the macro's array; the system stores the bounds
  // in reverse order.
  SAFEARRAYBOUND bounds[] = {{CountOf(matrix.size()), lower_bound},
                             {CountOf(matrix[0].size()), lower_bound}};
  OwnedArray array = Made(SafeArrayCreate(VT_R8, 2, bounds));
  Fill(matrix, array.get());
  return array;
}

void CheckShape(const DoubleMatrix& matrix) {
  for (const std::vector<double>& row : matrix) {
    if (row.size() != matrix[0].size())
      throw VekArraySizeError(kPlace, messages::kMessageArraySizeError);
  }
}

/// A macro's VARIANT that may be written and, if it holds or refers to an array of doubles, the
/// place of the array.
struct Target {
  VARIANT& variant;
  SAFEARRAY** array = nullptr;
};

/// Throws for an array that cannot be replaced by another.
void RequireReplaceable(SAFEARRAY** place) {
  if (*place == nullptr) return;
  SAFEARRAY* const array = ArrayAt(place);
  if (!IsPlaceFor(array) || !CanBeDestroyed(array)) ThrowUnfit();
  if (!IsOurs(array)) ThrowService();
}

/// Checks everything beforehand: the system may leave a locked array in a VARIANT that it has
/// already marked as empty.
Target TargetOf(const VARIANT* given) {
  auto* variant = const_cast<VARIANT*>(FollowReference(given));
  if (!IsPlaceFor(variant)) ThrowUnfit();
  Target target{*variant};
  if (variant->vt == (VT_ARRAY | VT_R8)) target.array = &variant->parray;
  if (variant->vt == (VT_ARRAY | VT_R8 | VT_BYREF) && IsPlaceFor(variant->pparray))
    target.array = variant->pparray;
  // A variable of another type cannot hold an array of doubles.
  if ((variant->vt & VT_BYREF) != 0 && target.array == nullptr) ThrowUnfit();
  if (target.array != nullptr) {
    RequireReplaceable(target.array);
  } else if ((variant->vt & VT_ARRAY) != 0) {
    RequireReplaceable(&variant->parray);
  }
  return target;
}

/// Replaces the contents of the VARIANT by the array.
void Replace(VARIANT& variant, OwnedArray array) {
  if (FAILED(VariantClear(&variant))) ThrowService();
  variant.vt = VT_ARRAY | VT_R8;
  variant.parray = array.Release();
}

}  // namespace

void ReDimVbArray(const DoubleMatrix& matrix, SAFEARRAY** array, LONG lower_bound) {
  if (IsEmpty(matrix) || array == nullptr) return;
  CheckShape(matrix);
  SAFEARRAY* old = *array;
  if (old == nullptr) {
    *array = NewArray(matrix, lower_bound).Release();
    return;
  }
  RequireReplaceable(array);
  const bool keeps = SafeArrayGetDim(old) == 2 && HoldsDoubles(old) &&
                     old->rgsabound[1].cElements == matrix.size() && old->pvData != nullptr &&
                     HasItsElements(old);
  if (!keeps) {
    OwnedArray fresh = NewArray(matrix, lower_bound);
    if (FAILED(SafeArrayDestroy(old))) ThrowService();
    *array = fresh.Release();
    return;
  }
  SAFEARRAYBOUND last{CountOf(matrix[0].size()), lower_bound};
  if (FAILED(SafeArrayRedim(old, &last))) ThrowService();
  Fill(matrix, old);
}

void StoreMatrix(const DoubleMatrix& matrix, VARIANT* variant) {
  if (IsEmpty(matrix) || variant == nullptr) return;
  const Target target = TargetOf(variant);
  if (target.array != nullptr) return ReDimVbArray(matrix, target.array, kLowerBound);
  CheckShape(matrix);
  Replace(target.variant, NewArray(matrix, kLowerBound));
}

PreparedVector::PreparedVector(std::span<const double> numbers, VARIANT* variant) {
  if (numbers.empty() || variant == nullptr) return;
  TargetOf(variant);
  array_ = Made(SafeArrayCreateVector(VT_R8, kLowerBound, CountOf(numbers.size())));
  std::memcpy(array_.get()->pvData, numbers.data(), numbers.size_bytes());
  variant_ = variant;
}

void PreparedVector::HandOver() {
  if (variant_ == nullptr) return;
  const Target target = TargetOf(variant_);
  if (target.array == nullptr) return Replace(target.variant, std::move(array_));
  if (*target.array != nullptr && FAILED(SafeArrayDestroy(*target.array))) ThrowService();
  *target.array = array_.Release();
}

VARIANT VariantOf(const DoubleMatrix& matrix) {
  VARIANT variant;
  VariantInit(&variant);
  if (IsEmpty(matrix)) return variant;
  CheckShape(matrix);
  variant.parray = NewArray(matrix, kLowerBound).Release();
  variant.vt = VT_ARRAY | VT_R8;
  return variant;
}

}  // namespace zavrel
