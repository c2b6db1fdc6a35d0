// A distribution called from a worksheet, compared with the function that computes it.
#include <benchmark/benchmark.h>

#include <boost/math/distributions/normal.hpp>

#include "engines.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

using benchmark::State;

void BareNormalCumulative(State& state) {
  const boost::math::normal_distribution<long double> normal;
  long double x = 1.3L;
  for (auto _ : state) {
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(static_cast<double>(cdf(normal, x)));
  }
}
BENCHMARK(BareNormalCumulative);

/// A worksheet call with the same number of arguments that computes almost nothing.
void NormalMean(State& state) { Calls(state, u"ZavNormal(0,1,\"mean\",1.3)"); }
BENCHMARK(NormalMean);

void NormalCumulative(State& state) { Calls(state, u"ZavNormal(0,1,\"xtop\",1.3)"); }
BENCHMARK(NormalCumulative);
const Ratio kCumulative("bare Boost.Math: ZavNormal(0,1,\"xtop\",1.3)", {{"NormalCumulative"}},
                        {{"BareNormalCumulative"}});
const Ratio kBeyondCall("bare Boost.Math: the same beyond ZavNormal(0,1,\"mean\",1.3)",
                        {{"NormalCumulative"}, {"NormalMean", -1}}, {{"BareNormalCumulative"}});

void BinomialQuantile(State& state) { Calls(state, u"ZavBinomial(1000000,0.3,\"ptox\",0.025)"); }
BENCHMARK(BinomialQuantile);
const Ratio kBinomial("microseconds: ZavBinomial(1000000,0.3,\"ptox\",0.025)",
                      {{"BinomialQuantile"}}, {});

}  // namespace
}  // namespace zavrel::bench
