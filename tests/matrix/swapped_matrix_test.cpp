// Matrices beyond the memory budget, whose working copies are on disk.
#include <doctest/doctest.h>

#include "matrix/dense_storage.h"
#include "matrix/eigendata.h"
#include "matrix/matrix_operations.h"
#include "platform/parallel.h"
#include "platform/swapped_array.h"
#include "sample_matrices.h"
#include "support/run_program.h"

namespace zavrel::tests {
namespace {

template <class Compute>
void CheckSameOnDisk(Compute compute) {
  const DoubleMatrix in_memory = compute();
  const MemoryBudget budget(1);
  CHECK(AreIdentical(compute(), in_memory));
}

TEST_CASE("what is computed on disk is what is computed in memory") {
  const DoubleMatrix tall = RandomMatrix(300, 7, 1);
  CheckSameOnDisk([&] { return matrix::PrincipalComponentScores(tall); });
  CheckSameOnDisk([&] { return matrix::PrincipalComponentScores(Transposed(tall)); });
  CheckSameOnDisk([&] { return MatrixInverse(RandomMatrix(40, 40, 2)); });
  CheckSameOnDisk([&] {
    std::vector<double> values;
    DoubleMatrix vectors;
    matrix::eigendata_private(Identity(9), values, vectors, {.compute_vectors = true});
    return vectors;
  });
}

TEST_CASE("without a disk, a matrix beyond the budget fails on every thread, and others do not") {
  const EnvironmentVariable no_folder(kTemporaryFolder, "/no such folder");
  const EnvironmentVariable no_other("TEMP", "/no such folder");
  const EnvironmentVariable no_home("HOME", "");
  const EnvironmentVariable no_profile("USERPROFILE", "");
  {
    const MemoryBudget budget(1'000'000);
    const DoubleMatrix tall = RandomMatrix(20'000, 7, 1);
    CHECK_THROWS_AS(matrix::PrincipalComponentScores(tall), VekErrorOpeningFile);
    CHECK(matrix::PrincipalComponentScores(RandomMatrix(30, 7, 1)).size() == 30);
  }
  // A product of which B is within the budget, and each thread's part of A is not.
  constexpr std::size_t kSize = 1025;
  const DoubleMatrix a(ParallelThreads() * (kSize + 1), std::vector<double>(kSize, 1.0));
  const DoubleMatrix b(kSize, std::vector<double>(kSize, 1.0));
  const MemoryBudget budget(kSize * kSize * sizeof(double));
  CHECK_THROWS_AS(MatrixMultiply(a, b), VekErrorOpeningFile);
}

TEST_CASE("a matrix that the disk has no room for fails with the folder's name") {
  const MemoryBudget budget(1);
  try {
    const dense::Storage storage({std::size_t{1} << 42, 8});
    FAIL("no room for this");
  } catch (const VekErrorWritingFile& failure) {
    REQUIRE(failure.arguments().size() == 1);
    CHECK(!std::get<std::u16string>(failure.arguments()[0]).empty());
  }
}

}  // namespace
}  // namespace zavrel::tests
