// Computations without the host.
#include <benchmark/benchmark.h>

#include "engines.h"
#include "ratios.h"
#include "stats/moment_block.h"
#include "stats/single_statistics.h"

namespace zavrel::bench {
namespace {

void TwoPasses(benchmark::State& state) {
  const std::vector<double> numbers = RandomNumbers(kRows, false);
  for (auto _ : state) {
    double sum = 0;
    for (const double x : numbers) sum += x;
    const double mean = sum / kRows;
    double squares = 0;
    for (const double x : numbers) squares += (x - mean) * (x - mean);
    benchmark::DoNotOptimize(squares);
  }
}
BENCHMARK(TwoPasses);

void MomentBlock(benchmark::State& state) {
  const std::vector<double> numbers = RandomNumbers(kRows, false);
  for (auto _ : state) benchmark::DoNotOptimize(ComputeBothForms(numbers));
}
BENCHMARK(MomentBlock);
const Ratio kMoments("two plain passes: seven moments in both forms, 1,000,000 numbers",
                     {{"MomentBlock"}}, {{"TwoPasses"}});

}  // namespace
}  // namespace zavrel::bench
