// Matrix algebra that takes memory on other threads, while these have none, or the thread that
// calls them, or none of all: an exception or the right matrix, and then the right one.
#include <doctest/doctest.h>

#include <functional>
#include <new>
#include <optional>

#include "failing_memory/library_memory.h"
#include "failing_memory/shipped_library.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;
using DoubleMatrix = std::vector<std::vector<double>>;

DoubleMatrix MatrixOf(std::size_t rows, std::size_t columns) {
  DoubleMatrix matrix(rows, std::vector<double>(columns));
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < columns; ++c)
      matrix[r][c] = static_cast<double>((7 * r + 3 * c * c) % 11) + (r == c ? 100.0 : 0.0);
  }
  return matrix;
}

/// Nothing if it throws.
std::optional<DoubleMatrix> Without(const std::function<DoubleMatrix()>& compute,
                                    std::int64_t granted, Shortage shortage, bool& failed) {
  std::optional<DoubleMatrix> result;
  LibraryMemory::RunOut(granted, shortage);
  try {
    result = compute();
  } catch (const std::bad_alloc&) {
  }
  failed = LibraryMemory::Return();
  return result;
}

/// How often a request has failed.
int Try(const std::function<DoubleMatrix()>& compute, std::int64_t step) {
  const DoubleMatrix right = compute();
  int failures = 0;
  for (const Shortage shortage : {Shortage::kOtherThreads, Shortage::kEverywhere,
                                  Shortage::kLasting, Shortage::kOneRequest}) {
    bool failed = true;
    for (std::int64_t k = 0; failed; k += step) {
      const auto result = Without(compute, k, shortage, failed);
      CHECK((!result || *result == right));
      if (failed) ++failures;
      if (shortage == Shortage::kOtherThreads) break;
    }
    CHECK(compute() == right);
  }
  return failures;
}

}  // namespace

TEST_CASE("matrix algebra whose threads have no memory is right, or throws") {
  const ShippedLibrary library(ZAVREL_ADD_IN, {});
  const auto found = [&](const char* name) { return library.module().FindExport(name); };
  const DoubleMatrix square = MatrixOf(300, 300);
  auto* const inverse = AsFunction<DoubleMatrix(DoubleMatrix)>(found("MatrixInverseC"));
  int failures = Try([&] { return inverse(square); }, 40);
  // Large enough that each task has copies of its own.
  const DoubleMatrix a = MatrixOf(1'025, 1'025);
  auto* const product =
      AsFunction<DoubleMatrix(DoubleMatrix, DoubleMatrix)>(found("MatrixMultiplyC"));
  failures += Try([&] { return product(a, a); }, 500);
  MESSAGE(failures, " failures");
  CHECK(failures > 20);
}

}  // namespace zavrel::tests
