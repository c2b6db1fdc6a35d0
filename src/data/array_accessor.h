#pragma once
// Read-only indexed views of doubles that lie elsewhere. None owns or copies what it views.
//
// Kernels take std::span<const double>: every view here is contiguous and has one in values(), so
// no loop pays for an indirection. The views are for code that is handed "some series" and reads a
// few elements of it.

#include <cstddef>
#include <span>
#include <vector>

namespace zavrel {

/// A count, and the elements by zero-based index.
template <class T>
class ArrayAccessor {
 public:
  std::size_t count() const { return values_.size(); }
  const T& operator[](std::size_t index) const { return values_[index]; }
  std::span<const T> values() const { return values_; }

 protected:
  explicit ArrayAccessor(std::span<const T> values) : values_(values) {}

 private:
  std::span<const T> values_;
};

/// Views a vector of doubles or a data set's numeric shape.
class VectorArrayAccessor : public ArrayAccessor<double> {
 public:
  explicit VectorArrayAccessor(const std::vector<double>& values) : ArrayAccessor(values) {}
  explicit VectorArrayAccessor(std::span<const double> shape) : ArrayAccessor(shape) {}
};

/// Views a block that a caller owns, such as the locked array of a macro add-in's call. A null
/// block is empty.
class RawMemoryArrayAccessor : public ArrayAccessor<double> {
 public:
  RawMemoryArrayAccessor(const void* block, std::size_t count)
      : ArrayAccessor({static_cast<const double*>(block), block != nullptr ? count : 0}) {}
};

}  // namespace zavrel
