#include "matrix/matrix_operations.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <utility>
#include <vector>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "matrix/dense_kernels.h"
#include "matrix/dense_storage.h"
#include "matrix/matrix_parallel.h"
#include "numbers/floating_point_scope.h"
#include "platform/parallel.h"

namespace zavrel {
namespace {

using dense::Kernels;
using dense::Shape;
using dense::Storage;

// If every dimension exceeds this, copying into dense storage pays off.
constexpr std::size_t kBlockedProduct = 1024;
// Fewer multiplications than this are done before another thread wakes up.
constexpr std::size_t kInlineProduct = 50'000;
// The number of rows in a task: small enough to distribute tasks evenly, large enough to use each
// part of B many times.
constexpr std::size_t kRowsPerTask = 64;
constexpr std::size_t kCopiedRowsPerTask = 256;
constexpr std::size_t kInverseColumnsPerTask = 128;

/// Calls body(begin, end) for the parts of [0, count), in parallel. If calls throw, what one of
/// them threw is thrown when all have ended.
template <class Body>
void ForParts(std::size_t count, std::size_t part, const Body& body) {
  std::atomic_flag has_failed;
  std::exception_ptr failure;
  ParallelCompute((count + part - 1) / part, [&](std::size_t index) {
    const std::size_t begin = index * part;
    try {
      body(begin, std::min(begin + part, count));
    } catch (...) {
      if (!has_failed.test_and_set()) failure = std::current_exception();
    }
  });
  if (failure != nullptr) std::rethrow_exception(failure);
}

void MultiplyByRows(const DoubleMatrix& a, const DoubleMatrix& b, Shape a_shape,
                    std::size_t columns, DoubleMatrix& product) {
  std::vector<const double*> a_rows(a.size()), b_rows(b.size());
  std::vector<double*> product_rows(a.size());
  std::ranges::transform(a, a_rows.begin(), [](const auto& row) { return row.data(); });
  std::ranges::transform(b, b_rows.begin(), [](const auto& row) { return row.data(); });
  std::ranges::transform(product, product_rows.begin(), [](auto& row) { return row.data(); });
  const auto multiply = [&](std::size_t begin, std::size_t end) {
    dense::AddRowProducts(a_rows.data() + begin, end - begin, a_shape.columns, b_rows.data(),
                          columns, product_rows.data() + begin);
  };
  if (a_shape.rows == 1 || a_shape.rows * a_shape.columns * columns < kInlineProduct) {
    multiply(0, a_shape.rows);
  } else {
    // At least eight tasks of whole tiles, if there are enough rows.
    const std::size_t eighth = (a_shape.rows / 8 + 3) / 4 * 4;
    ForParts(a_shape.rows, std::clamp<std::size_t>(eighth, 4, kRowsPerTask), multiply);
  }
}

/// In addition to the operands and the result, this takes the memory of all three again, and at
/// most a few MB per thread for the library's buffers. Each task creates its own rows of the
/// result, since the first access to fresh memory is slow.
DoubleMatrix MultiplyBlocked(const DoubleMatrix& a, const DoubleMatrix& b, Shape a_shape,
                             std::size_t columns) {
  const auto& multiply = dense::BestKernels().multiply;
  const std::size_t inner = a_shape.columns;
  Storage dense_b({inner, columns});
  ForParts(inner, kCopiedRowsPerTask, [&](std::size_t begin, std::size_t end) {
    for (std::size_t r = begin; r < end; ++r) std::ranges::copy(b[r], dense_b.data() + r * columns);
  });
  // Each task packs all of B again, so there are no more tasks than threads.
  const std::size_t share = (a_shape.rows + ParallelThreads() - 1) / ParallelThreads();
  DoubleMatrix product(a_shape.rows);
  ForParts(a_shape.rows, share, [&](std::size_t begin, std::size_t end) {
    const std::size_t rows = end - begin;
    Storage a_part({rows, inner}), product_part({rows, columns});
    for (std::size_t r = 0; r < rows; ++r)
      std::ranges::copy(a[begin + r], a_part.data() + r * inner);
    multiply(a_part.data(), rows, inner, dense_b.data(), columns, product_part.data());
    for (std::size_t r = 0; r < rows; ++r) {
      const double* const row = product_part.data() + r * columns;
      product[begin + r].assign(row, row + columns);
    }
  });
  return product;
}

}  // namespace

DoubleMatrix MatrixAdd(const DoubleMatrix& a, const DoubleMatrix& b) {
  const FloatingPointScope environment;
  const Shape shape = dense::ShapeOf(a, "MatrixAdd");
  const Shape b_shape = dense::ShapeOf(b, "MatrixAdd");
  if (b_shape.rows < shape.rows || b_shape.columns < shape.columns)
    throw VekArraySizeError("MatrixAdd", messages::kMessageArraySizesDiffer);
  DoubleMatrix sum = dense::MakeMatrix(shape);
  for (std::size_t r = 0; r < shape.rows; ++r)
    for (std::size_t c = 0; c < shape.columns; ++c) sum[r][c] = a[r][c] + b[r][c];
  return Settled(std::move(sum));
}

DoubleMatrix MatrixMultiply(const DoubleMatrix& a, const DoubleMatrix& b) {
  const FloatingPointScope environment;
  const Shape a_shape = dense::ShapeOf(a, "MatrixMultiply");
  const Shape b_shape = dense::ShapeOf(b, "MatrixMultiply");
  if (a_shape.columns != b_shape.rows)
    throw VekArraySizeError("MatrixMultiply", messages::kMessageArraySizeError);
  const Shape shape{a_shape.rows, b_shape.columns};
  if (std::min({shape.rows, a_shape.columns, shape.columns}) > kBlockedProduct)
    return MultiplyBlocked(a, b, a_shape, shape.columns);
  DoubleMatrix product = dense::MakeMatrix(shape);
  MultiplyByRows(a, b, a_shape, shape.columns, product);
  return product;
}

DoubleMatrix MatrixInverse(const DoubleMatrix& a) {
  const FloatingPointScope environment;
  const std::size_t n = dense::SizeOfSquare(a, "MatrixInverse");
  const Kernels& kernels = dense::BestKernels();
  const Shape shape{n, n};
  DoubleMatrix inverse = dense::MakeMatrix(shape);
  Storage factors(shape), columns(shape);
  std::vector<int> places(n);
  dense::CopyToColumns(a, shape, factors.data());
  if (n != 0) kernels.factor(factors.data(), n, places.data());
  ForParts(n, kInverseColumnsPerTask, [&](std::size_t begin, std::size_t end) {
    double* const part = columns.data() + begin * n;
    kernels.invert_columns(factors.data(), places.data(), n, begin, end - begin, part);
    dense::CopyFromColumns(part, {n, end - begin}, begin, inverse);
  });
  return inverse;
}

double MatrixDeterminant(const DoubleMatrix& a) {
  const FloatingPointScope environment;
  const std::size_t n = dense::SizeOfSquare(a, "MatrixDeterminant");
  Storage factors({n, n});
  std::vector<int> places(n);
  dense::CopyToColumns(a, {n, n}, factors.data());
  if (n == 0) return 1;
  double product = dense::BestKernels().factor(factors.data(), n, places.data());
  for (std::size_t i = 0; i < n; ++i) product *= factors.data()[i * n + i];
  return Settled(product);
}

}  // namespace zavrel
