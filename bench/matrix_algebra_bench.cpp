// Dense matrix operations against the same kernels on matrices that stand in dense storage already,
// with the same instruction set: what remains is the cost of rows and of checks.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "matrix/dense_kernels.h"
#include "matrix/dense_storage.h"
#include "matrix/eigendata.h"
#include "matrix/matrix_operations.h"
#include "platform/parallel.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

using dense::Kernels;
using dense::Storage;

// Peak memory beside operands and result, n x n each: row loop none; blocked product 3 n^2 doubles;
// inverse 2 n^2; determinant n^2; eigenvalues 2 n^2, with vectors 3 n^2; scores of m x p up to
// 3 m p + 6 p^2. The library's packing buffers come on top, a few MB per thread.

DoubleMatrix Numbers(std::size_t rows, std::size_t columns) {
  DoubleMatrix matrix(rows, std::vector<double>(columns));
  unsigned state = 1;
  for (auto& row : matrix)
    for (double& number : row) number = (state = state * 1664525u + 1013904223u) / 4294967296.0;
  return matrix;
}

DoubleMatrix Symmetric(std::size_t n) {
  DoubleMatrix matrix = Numbers(n, n);
  for (std::size_t r = 0; r < n; ++r)
    for (std::size_t c = 0; c < r; ++c) matrix[r][c] = matrix[c][r];
  return matrix;
}

const Kernels& Best() { return dense::BestKernels(); }

template <std::size_t kSize>
void Product(benchmark::State& state) {
  const DoubleMatrix a = Numbers(kSize, kSize);
  for (auto _ : state) benchmark::DoNotOptimize(MatrixMultiply(a, a));
}
void Product1000(benchmark::State& state) { Product<1000>(state); }
void Product1500(benchmark::State& state) { Product<1500>(state); }
BENCHMARK(Product1000);
BENCHMARK(Product1500);

/// The blocked product of matrices in dense storage, on all threads or one.
void DenseProduct(benchmark::State& state, std::size_t n, std::size_t parts,
                  const Kernels& kernels) {
  Storage a({n, n}), out({n, n});
  dense::CopyRows(Numbers(n, n), {n, n}, a.data());
  const std::size_t part = (n + parts - 1) / parts;
  for (auto _ : state) {
    ParallelFor(parts, [&](std::size_t index) {
      const std::size_t begin = index * part, rows = std::min(part, n - begin);
      kernels.multiply(a.data() + begin * n, rows, n, a.data(), n, out.data() + begin * n);
    });
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}
void LibraryProduct1000(benchmark::State& state) {
  DenseProduct(state, 1000, ParallelThreads(), Best());
}
void LibraryProduct1500(benchmark::State& state) {
  DenseProduct(state, 1500, ParallelThreads(), Best());
}
void ProductOfBestKernel(benchmark::State& state) { DenseProduct(state, 600, 1, Best()); }
void ProductOfBaseline(benchmark::State& state) {
  DenseProduct(state, 600, 1, dense::kBaselineKernels);
}
BENCHMARK(LibraryProduct1000);
BENCHMARK(LibraryProduct1500);
BENCHMARK(ProductOfBestKernel);
BENCHMARK(ProductOfBaseline);

constexpr std::size_t kSize = 600;

/// The library's own steps on a matrix in dense storage: the copy that it would work on, then
/// these.
void DenseInverse(benchmark::State& state, const Kernels& kernels, bool invert) {
  Storage source({kSize, kSize});
  dense::CopyToColumns(Numbers(kSize, kSize), {kSize, kSize}, source.data());
  for (auto _ : state) {
    Storage factors({kSize, kSize}), out({invert ? kSize : 0, kSize});
    std::vector<int> places(kSize);
    std::copy_n(source.data(), kSize * kSize, factors.data());
    kernels.factor(factors.data(), kSize, places.data());
    if (invert) kernels.invert_columns(factors.data(), places.data(), kSize, 0, kSize, out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::DoNotOptimize(factors.data());
  }
}
void LibraryInverse(benchmark::State& state) { DenseInverse(state, Best(), true); }
void InverseOfBaseline(benchmark::State& state) {
  DenseInverse(state, dense::kBaselineKernels, true);
}
void LibraryDeterminant(benchmark::State& state) { DenseInverse(state, Best(), false); }
void Inverse(benchmark::State& state) {
  const DoubleMatrix a = Numbers(kSize, kSize);
  for (auto _ : state) benchmark::DoNotOptimize(MatrixInverse(a));
}
void Determinant(benchmark::State& state) {
  const DoubleMatrix a = Numbers(kSize, kSize);
  for (auto _ : state) benchmark::DoNotOptimize(MatrixDeterminant(a));
}
BENCHMARK(LibraryInverse);
BENCHMARK(InverseOfBaseline);
BENCHMARK(LibraryDeterminant);
BENCHMARK(Inverse);
BENCHMARK(Determinant);

constexpr std::size_t kVariables = 200;

void LibraryEigen(benchmark::State& state) {
  Storage source({kVariables, kVariables}), vectors({kVariables, kVariables});
  dense::CopyRows(Symmetric(kVariables), {kVariables, kVariables}, source.data());
  std::vector<double> values(kVariables);
  for (auto _ : state) {
    Best().self_adjoint_eigen(source.data(), kVariables, values.data(), vectors.data());
    benchmark::DoNotOptimize(vectors.data());
  }
}
void Eigendata(benchmark::State& state) {
  const DoubleMatrix a = Symmetric(kVariables);
  std::vector<double> values;
  DoubleMatrix vectors;
  for (auto _ : state) {
    matrix::eigendata_private(a, values, vectors, {.compute_vectors = true, .descending = true});
    benchmark::DoNotOptimize(vectors.data());
  }
}
BENCHMARK(LibraryEigen);
BENCHMARK(Eigendata);

constexpr dense::Shape kData{5000, 50};

void LibraryScores(benchmark::State& state) {
  Storage source(kData), scores(kData);
  dense::CopyToColumns(Numbers(kData.rows, kData.columns), kData, source.data());
  for (auto _ : state) {
    Best().singular_scores(source.data(), kData.rows, kData.columns, scores.data());
    benchmark::DoNotOptimize(scores.data());
  }
}
void Scores(benchmark::State& state) {
  const DoubleMatrix x = Numbers(kData.rows, kData.columns);
  for (auto _ : state) benchmark::DoNotOptimize(matrix::PrincipalComponentScores(x));
}
BENCHMARK(LibraryScores);
BENCHMARK(Scores);

const Ratio kRatios[] = {
    {"the library's product: ordered product, n = 1000",
     {{"Product1000"}},
     {{"LibraryProduct1000"}},
     2.5},
    {"the library's product: blocked product, n = 1500",
     {{"Product1500"}},
     {{"LibraryProduct1500"}},
     1.15},
    {"the library's LU and solves on one thread: inverse, n = 600",
     {{"Inverse"}},
     {{"LibraryInverse"}},
     1.1},
    {"the library's LU: determinant, n = 600", {{"Determinant"}}, {{"LibraryDeterminant"}}, 1.1},
    {"the library's solver: eigenvalues and vectors, n = 200",
     {{"Eigendata"}},
     {{"LibraryEigen"}},
     1.1},
    {"dense QR and SVD: scores, 5000 x 50", {{"Scores"}}, {{"LibraryScores"}}, 1.1},
    {"baseline: product with the best instructions, n = 600",
     {{"ProductOfBestKernel"}},
     {{"ProductOfBaseline"}},
     0.5},
    {"baseline: inverse with the best instructions, n = 600",
     {{"LibraryInverse"}},
     {{"InverseOfBaseline"}},
     0.5},
};

}  // namespace
}  // namespace zavrel::bench
