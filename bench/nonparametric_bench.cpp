// Exact p-values compared with one pass of the recurrence that counts the arrangements, and random
// numbers compared with the generator alone.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "engines.h"
#include "random/clock_seed.h"
#include "random/mersenne_twister.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

using benchmark::State;

// The minimal cost of counting rank sums up to the middle: n factors of a generating function.

void CountRankSums(State& state) {
  __extension__ using Count = unsigned __int128;
  constexpr std::size_t kSize = 50;  // of either sample
  constexpr std::size_t kMiddle = kSize * kSize / 2;
  std::vector<Count> counts(kMiddle + 1);
  for (auto _ : state) {
    std::fill(counts.begin(), counts.end(), Count{0});
    counts[0] = 1;
    for (std::size_t i = 1; i <= kSize; ++i) {
      for (std::size_t u = kMiddle; u >= kSize + i; --u) counts[u] -= counts[u - kSize - i];
      for (std::size_t u = i; u <= kMiddle; ++u) counts[u] += counts[u - i];
    }
    benchmark::DoNotOptimize(counts.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(CountRankSums);

void MannWhitneyExact(State& state) { Calls(state, u"ZavMWpValue(50,50,2525,0)"); }
BENCHMARK(MannWhitneyExact);
const Ratio kMannWhitney("one pass of counting: ZavMWpValue(50,50,2525,0)", {{"MannWhitneyExact"}},
                         {{"CountRankSums"}});

void CountSignedRanks(State& state) {
  constexpr std::size_t kPairs = 200;
  constexpr std::size_t kMiddle = kPairs * (kPairs + 1) / 4;
  std::vector<double> shares(kMiddle + 1);
  for (auto _ : state) {
    std::fill(shares.begin(), shares.end(), 0.0);
    shares[0] = 1;
    for (std::size_t i = 1; i <= kPairs; ++i) {
      const std::size_t last = std::min(kMiddle, i * (i + 1) / 2);
      for (std::size_t v = last; v >= i; --v) shares[v] = (shares[v] + shares[v - i]) * 0.5;
      for (std::size_t v = std::min(last + 1, i); v-- > 0;) shares[v] *= 0.5;
    }
    benchmark::DoNotOptimize(shares.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(CountSignedRanks);

void SignedRankExact(State& state) { Calls(state, u"ZavWSRpValue(200,10050,0)"); }
BENCHMARK(SignedRankExact);
const Ratio kSignedRank("one pass of counting: ZavWSRpValue(200,10050,0)", {{"SignedRankExact"}},
                        {{"CountSignedRanks"}});

void SignedRankLargest(State& state) { Calls(state, u"ZavWSRpValue(1000,250250,0)"); }
BENCHMARK(SignedRankLargest);
const Ratio kLargest("microseconds: ZavWSRpValue(1000,250250,0), the largest exact one",
                     {{"SignedRankLargest"}}, {});

void KruskalWallisExact(State& state) {
  Calls(state, u"ZavKWpValue(2,{1,5,9,12,16,18},{2,4,8,11,13},{3,6,7,10,14,15,17})");
}
BENCHMARK(KruskalWallisExact);
const Ratio kKruskal("microseconds: ZavKWpValue of 6, 5 and 7 values, 14,702,688 arrangements",
                     {{"KruskalWallisExact"}}, {}, 20'000);

// Random numbers.

void Generator(State& state) {
  MersenneTwister generator(4711);
  for (auto _ : state) benchmark::DoNotOptimize(generator.NextDouble());
}
BENCHMARK(Generator);

/// The work of a call, without the call.
void SeedAndDraw(State& state) {
  for (auto _ : state) {
    MersenneTwister generator(ClockSeed());
    benchmark::DoNotOptimize(generator.NextDouble());
  }
}
BENCHMARK(SeedAndDraw);
const Ratio kSeeding("the generator alone: seeding it from the clock and drawing once",
                     {{"SeedAndDraw"}}, {{"Generator"}});

void HashClock(State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(HashOfClock());
}
BENCHMARK(HashClock);
const Ratio kHash("the generator alone: hashing the clock", {{"HashClock"}}, {{"Generator"}});

void RandThroughHost(State& state) { Calls(state, u"ZavRand()"); }
BENCHMARK(RandThroughHost);
const Ratio kRand("the generator alone: ZavRand() through the host", {{"RandThroughHost"}},
                  {{"Generator"}});

}  // namespace
}  // namespace zavrel::bench
