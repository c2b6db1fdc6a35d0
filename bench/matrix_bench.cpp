// Covariances and correlations, and the cost of parallel work.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <random>
#include <vector>

#include "library_avx2.h"
#include "matrix/association.h"
#include "matrix/ranks.h"
#include "numbers/error_double.h"
#include "platform/parallel.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

constexpr std::size_t kVariables = 27;
constexpr std::size_t kObservations = 100'000;

/// Column-major; one value in `one_in` is missing, or none.
std::vector<double> Variables(unsigned one_in) {
  std::mt19937_64 random(27);
  std::normal_distribution<double> normal;
  std::vector<double> values(kVariables * kObservations);
  for (double& x : values) {
    x = normal(random);
    if (one_in > 0 && random() % one_in == 0) x = kMissingValue;
  }
  return values;
}

const std::vector<double>& Whole() {
  static const std::vector<double> values = Variables(0);
  return values;
}

std::vector<VariableColumn> ColumnsOf(const std::vector<double>& values) {
  std::vector<VariableColumn> columns;
  columns.reserve(kVariables);
  for (std::size_t c = 0; c < kVariables; ++c)
    columns.push_back(VariableColumn(values).subspan(c * kObservations, kObservations));
  return columns;
}

void Correlate(const std::vector<double>& values, bool ranks, benchmark::State& state) {
  const std::vector<VariableColumn> columns = ColumnsOf(values);
  for (auto _ : state)
    benchmark::DoNotOptimize(
        CalculateAssociationMatrix({.pair = {Measure::kCorrelation}, .use_ranks = ranks}, columns));
}

/// Within a section everything else runs on one thread.
template <class Body>
void OnOneThread(Body body) {
  ParallelFor(2, [&](std::size_t index) {
    if (index == 0) body();
  });
}

void Correlation(benchmark::State& state) { Correlate(Whole(), false, state); }
BENCHMARK(Correlation)->UseRealTime();

void CorrelationOneThread(benchmark::State& state) {
  OnOneThread([&] { Correlate(Whole(), false, state); });
}
BENCHMARK(CorrelationOneThread)->UseRealTime();

void SymmetricUpdateOf(benchmark::State& state, std::size_t threads) {
  const std::vector<double>& values = Whole();
  for (auto _ : state) {
    std::vector<std::vector<double>> sums(threads, std::vector<double>(kVariables * kVariables));
    ParallelFor(threads, [&](std::size_t part) {
      const std::size_t begin = kObservations * part / threads;
      const std::size_t end = kObservations * (part + 1) / threads;
      AddSymmetricUpdate(values.data(), begin, end - begin, kObservations, kVariables,
                         sums[part].data());
    });
    for (std::size_t part = 1; part < threads; ++part) {
      for (std::size_t e = 0; e < sums[0].size(); ++e) sums[0][e] += sums[part][e];
    }
    benchmark::DoNotOptimize(sums);
  }
}

void SymmetricUpdate(benchmark::State& state) { SymmetricUpdateOf(state, ParallelThreads()); }
BENCHMARK(SymmetricUpdate)->UseRealTime();
void SymmetricUpdateOneThread(benchmark::State& state) { SymmetricUpdateOf(state, 1); }
BENCHMARK(SymmetricUpdateOneThread)->UseRealTime();
const Ratio kCorrelation(
    "the bare symmetric update, which uses one thread: correlation, all threads", {{"Correlation"}},
    {{"SymmetricUpdateOneThread"}}, 0.6);
const Ratio kCorrelationShared(
    "its rows shared out by us among all threads: correlation, all threads", {{"Correlation"}},
    {{"SymmetricUpdate"}}, 0.6);
const Ratio kCorrelationOne("the bare symmetric update: correlation, 27 x 100,000, one thread",
                            {{"CorrelationOneThread"}}, {{"SymmetricUpdateOneThread"}}, 0.45);

void CorrelationWithGaps(benchmark::State& state) { Correlate(Variables(100), false, state); }
BENCHMARK(CorrelationWithGaps)->UseRealTime();
const Ratio kGaps("without gaps: correlation with 1 % gaps, pair by pair",
                  {{"CorrelationWithGaps"}}, {{"Correlation"}}, 5);

void RankEachOnce(benchmark::State& state) {
  const std::vector<VariableColumn> columns = ColumnsOf(Whole());
  std::vector<double> ranks(kVariables * kObservations);
  std::vector<std::uint32_t> orders(kVariables * kObservations);
  std::vector<std::uint64_t> scratch(2 * kVariables * kObservations);
  for (auto _ : state) {
    ParallelFor(kVariables, [&](std::size_t c) {
      const auto order = std::span(orders).subspan(c * kObservations, kObservations);
      OrderInto(columns[c], order,
                std::span(scratch).subspan(2 * c * kObservations, 2 * kObservations));
      RankAllInto(order, std::span(ranks).subspan(c * kObservations, kObservations));
    });
    benchmark::DoNotOptimize(ranks.data());
  }
}
BENCHMARK(RankEachOnce)->UseRealTime();

void RankCorrelation(benchmark::State& state) { Correlate(Whole(), true, state); }
BENCHMARK(RankCorrelation)->UseRealTime();
const Ratio kRanks("ranking each column once and the correlation: rank correlation",
                   {{"RankCorrelation"}}, {{"RankEachOnce"}, {"Correlation"}}, 1.3);

void RankCorrelationWithGaps(benchmark::State& state) { Correlate(Variables(100), true, state); }
BENCHMARK(RankCorrelationWithGaps)->UseRealTime();
const Ratio kRankGaps("without gaps: rank correlation with 1 % gaps, pair by pair",
                      {{"RankCorrelationWithGaps"}}, {{"RankCorrelation"}}, 20);

void WorkFiftyMicroseconds() {
  const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(50);
  while (std::chrono::steady_clock::now() < end) {
  }
}

void TwoPiecesInParallel(benchmark::State& state) {
  for (auto _ : state) ParallelFor(2, [](std::size_t) { WorkFiftyMicroseconds(); });
}
BENCHMARK(TwoPiecesInParallel)->UseRealTime();

void TwoPiecesInline(benchmark::State& state) {
  for (auto _ : state) {
    for (int piece = 0; piece < 2; ++piece) WorkFiftyMicroseconds();
  }
}
BENCHMARK(TwoPiecesInline)->UseRealTime();
const Ratio kSection("in line: two pieces of 50 microseconds in parallel",
                     {{"TwoPiecesInParallel"}}, {{"TwoPiecesInline"}}, 1);

}  // namespace
}  // namespace zavrel::bench
