// The studentized range by the distribution library's kernel, compared with the least that a double
// integral costs.
#include <benchmark/benchmark.h>

#include <cmath>

#include "distributions/studentized_range.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

using benchmark::State;
using DistLib::StudentizedRange;

/// The complementary error function at 25 by 25 nodes: two smooth bells take as many each for
/// twelve digits.
void BareDoubleSum(State& state) {
  constexpr int kNodes = 25;
  double shift = 1.3;
  for (auto _ : state) {
    benchmark::DoNotOptimize(shift);
    double sum = 0;
    for (int i = 0; i < kNodes; ++i)
      for (int j = 0; j < kNodes; ++j) sum += std::erfc(0.2 * (i - j) + shift);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BareDoubleSum);

void Tail(State& state, double means, double df, double q) {
  const StudentizedRange range(means, df);
  for (auto _ : state) {
    benchmark::DoNotOptimize(q);
    benchmark::DoNotOptimize(range.UpperTail(q));
  }
}

void ExactRangeTail(State& state) { Tail(state, 5, 10, 3.5); }
BENCHMARK(ExactRangeTail);
const Ratio kTail("erfc at 625 nodes: upper tail of the studentized range, 5 means, 10 df",
                  {{"ExactRangeTail"}}, {{"BareDoubleSum"}});
const Ratio kTailTime("microseconds: the same", {{"ExactRangeTail"}}, {}, 200);

// Where both integrals need the most nodes.
void ExactRangeTailMost(State& state) { Tail(state, 200, 30, 5); }
BENCHMARK(ExactRangeTailMost);
const Ratio kMost("microseconds: 200 means, 30 df", {{"ExactRangeTailMost"}}, {}, 200);

void ExactRangeQuantile(State& state) {
  const StudentizedRange range(5, 10);
  for (auto _ : state) benchmark::DoNotOptimize(range.UpperQuantile(0.05L));
}
BENCHMARK(ExactRangeQuantile);
const Ratio kQuantile("upper tail of the studentized range: its upper 5 % point",
                      {{"ExactRangeQuantile"}}, {{"ExactRangeTail"}});

}  // namespace
}  // namespace zavrel::bench
