// Dense matrix operations, on rows and with all checks, compared with the library called directly
// on its own matrices, with the same instruction set.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "library_avx2.h"
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

// Peak memory in addition to operands and result, which are n x n each: row loop none; blocked
// product 3 n^2 doubles; inverse 2 n^2; determinant n^2; eigenvalues 2 n^2, with vectors 3 n^2;
// scores of m x p 2 m p + 6 p^2 if m >= 2 p, otherwise up to 3 m p + 6 p^2. The library's packing
// buffers add a few MB per thread.

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

template <std::size_t kSize>
void Product(benchmark::State& state) {
  const DoubleMatrix a = Numbers(kSize, kSize);
  for (auto _ : state) benchmark::DoNotOptimize(MatrixMultiply(a, a));
}
void Product1000(benchmark::State& state) { Product<1000>(state); }
void Product1500(benchmark::State& state) { Product<1500>(state); }
BENCHMARK(Product1000)->UseRealTime();
BENCHMARK(Product1500)->UseRealTime();

/// A task's rows of the library's product, on as many threads as the add-in uses.
template <std::size_t kSize>
void LibraryProduct(benchmark::State& state) {
  const LibraryMatrix a(Numbers(kSize, kSize));
  LibraryMatrix out(Numbers(kSize, kSize));
  const std::size_t parts = ParallelThreads();
  for (auto _ : state) {
    ParallelFor(parts, [&](std::size_t part) {
      const std::size_t begin = kSize * part / parts, end = kSize * (part + 1) / parts;
      a.MultiplyRows(begin, end - begin, out);
    });
    benchmark::ClobberMemory();
  }
}
void LibraryProduct1000(benchmark::State& state) { LibraryProduct<1000>(state); }
void LibraryProduct1500(benchmark::State& state) { LibraryProduct<1500>(state); }
BENCHMARK(LibraryProduct1000)->UseRealTime();
BENCHMARK(LibraryProduct1500)->UseRealTime();

constexpr std::size_t kSize = 600;

/// The same source compiled for every processor and for the best one, on one thread.
void KernelProduct(benchmark::State& state, const Kernels& kernels) {
  constexpr dense::Shape kShape{kSize, kSize};
  Storage a(kShape), out(kShape);
  dense::CopyRows(Numbers(kSize, kSize), kShape, a.data());
  for (auto _ : state) {
    kernels.multiply(a.data(), kSize, kSize, a.data(), kSize, out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}
void ProductOfBestKernel(benchmark::State& state) { KernelProduct(state, dense::BestKernels()); }
void ProductOfBaseline(benchmark::State& state) { KernelProduct(state, dense::kBaselineKernels); }
BENCHMARK(ProductOfBestKernel);
BENCHMARK(ProductOfBaseline);

void KernelInverse(benchmark::State& state, const Kernels& kernels) {
  Storage source({kSize, kSize}), factors({kSize, kSize}), out({kSize, kSize});
  std::vector<int> places(kSize);
  dense::CopyToColumns(Numbers(kSize, kSize), {kSize, kSize}, source.data());
  for (auto _ : state) {
    std::copy_n(source.data(), kSize * kSize, factors.data());
    kernels.factor(factors.data(), kSize, places.data());
    kernels.invert_columns(factors.data(), places.data(), kSize, 0, kSize, out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}
void InverseOfBestKernel(benchmark::State& state) { KernelInverse(state, dense::BestKernels()); }
void InverseOfBaseline(benchmark::State& state) { KernelInverse(state, dense::kBaselineKernels); }
BENCHMARK(InverseOfBestKernel);
BENCHMARK(InverseOfBaseline);

void LibraryInverse(benchmark::State& state) {
  const LibraryMatrix a(Numbers(kSize, kSize));
  for (auto _ : state) benchmark::DoNotOptimize(a.Inverse());
}
void LibraryDeterminant(benchmark::State& state) {
  const LibraryMatrix a(Numbers(kSize, kSize));
  for (auto _ : state) benchmark::DoNotOptimize(a.Determinant());
}
void Inverse(benchmark::State& state) {
  const DoubleMatrix a = Numbers(kSize, kSize);
  for (auto _ : state) benchmark::DoNotOptimize(MatrixInverse(a));
}
/// Within a section everything else runs on one thread.
void InverseOneThread(benchmark::State& state) {
  ParallelFor(2, [&](std::size_t part) {
    if (part == 0) Inverse(state);
  });
}
void Determinant(benchmark::State& state) {
  const DoubleMatrix a = Numbers(kSize, kSize);
  for (auto _ : state) benchmark::DoNotOptimize(MatrixDeterminant(a));
}
BENCHMARK(LibraryInverse);
BENCHMARK(LibraryDeterminant);
BENCHMARK(Inverse)->UseRealTime();
BENCHMARK(InverseOneThread)->UseRealTime();
BENCHMARK(Determinant);

constexpr std::size_t kVariables = 200;

void LibraryEigen(benchmark::State& state) {
  const LibraryMatrix a(Symmetric(kVariables));
  for (auto _ : state) benchmark::DoNotOptimize(a.EigenvaluesAndVectors());
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

template <std::size_t kRows, std::size_t kColumns>
void LibraryScoresOf(benchmark::State& state) {
  const LibraryMatrix x(Numbers(kRows, kColumns));
  for (auto _ : state) benchmark::DoNotOptimize(x.Scores());
}
template <std::size_t kRows, std::size_t kColumns>
void ScoresOf(benchmark::State& state) {
  const DoubleMatrix x = Numbers(kRows, kColumns);
  for (auto _ : state) benchmark::DoNotOptimize(matrix::PrincipalComponentScores(x));
}
void LibraryScores(benchmark::State& state) { LibraryScoresOf<5000, 50>(state); }
void Scores(benchmark::State& state) { ScoresOf<5000, 50>(state); }
void LibraryScoresSquare(benchmark::State& state) { LibraryScoresOf<200, 200>(state); }
void ScoresSquare(benchmark::State& state) { ScoresOf<200, 200>(state); }
BENCHMARK(LibraryScores);
BENCHMARK(Scores);
BENCHMARK(LibraryScoresSquare);
BENCHMARK(ScoresSquare);

const Ratio kRatios[] = {
    {"the library's product: ordered product, n = 1000",
     {{"Product1000"}},
     {{"LibraryProduct1000"}},
     2.5},
    {"the library's product: blocked product, n = 1500",
     {{"Product1500"}},
     {{"LibraryProduct1500"}},
     1.15},
    {"the library's inverse, one thread: inverse, n = 600",
     {{"InverseOneThread"}},
     {{"LibraryInverse"}},
     1.1},
    {"the library's inverse, one thread: inverse on all threads, n = 600",
     {{"Inverse"}},
     {{"LibraryInverse"}}},
    {"the library's determinant: determinant, n = 600",
     {{"Determinant"}},
     {{"LibraryDeterminant"}},
     1.1},
    {"the library's solver: eigenvalues and vectors, n = 200",
     {{"Eigendata"}},
     {{"LibraryEigen"}},
     1.1},
    {"the library's decomposition: scores, 5000 x 50", {{"Scores"}}, {{"LibraryScores"}}, 1.1},
    {"the library's decomposition: scores, 200 x 200",
     {{"ScoresSquare"}},
     {{"LibraryScoresSquare"}},
     1.1},
    {"baseline: product with the best instructions, n = 600",
     {{"ProductOfBestKernel"}},
     {{"ProductOfBaseline"}},
     0.5},
    {"baseline: inverse with the best instructions, n = 600",
     {{"InverseOfBestKernel"}},
     {{"InverseOfBaseline"}},
     0.5},
};

}  // namespace
}  // namespace zavrel::bench
