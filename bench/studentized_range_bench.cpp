// The studentized range: a worksheet call, and the cost of a quantile in probabilities.
#include <benchmark/benchmark.h>

#include "engines.h"
#include "ratios.h"
#include "stats/studentized_range.h"

namespace zavrel::bench {
namespace {

using benchmark::State;

void Calls(State& state, std::u16string_view formula) {
  SecondsOf(RealEngine(), formula);
  for (auto _ : state) benchmark::DoNotOptimize(RealEngine().Evaluate(formula, {0, 0, 5}));
}

void StudentizedRangeDist(State& state) { Calls(state, u"ZavStudentizedRangeDist(3.5,10,5)"); }
BENCHMARK(StudentizedRangeDist);
const Ratio kDist("ZavStudentizedRangeDist(3.5,10,5)", {{"StudentizedRangeDist"}}, {}, 100);

// One degree of freedom has the widest integral.
void StudentizedRangeDistWide(State& state) { Calls(state, u"ZavStudentizedRangeDist(8,1,2)"); }
BENCHMARK(StudentizedRangeDistWide);
const Ratio kWide("ZavStudentizedRangeDist(8,1,2)", {{"StudentizedRangeDistWide"}}, {}, 100);

void StudentizedRangeInv(State& state) {
  Calls(state, u"ZavStudentizedRangeInv(0.95,10,5)");
  state.counters["probabilities"] = StudentizedRangeQuantile(0.95, 10, 5).evaluations;
}
BENCHMARK(StudentizedRangeInv);
const Ratio kInv("ZavStudentizedRangeDist: ZavStudentizedRangeInv(0.95,10,5)",
                 {{"StudentizedRangeInv"}}, {{"StudentizedRangeDist"}});

}  // namespace
}  // namespace zavrel::bench
