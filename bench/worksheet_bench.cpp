// Worksheet calls of the real add-in through the host, compared with the host's own reading of the
// same cells and with one scan over as many cells.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "data/cell_columns.h"
#include "engines.h"
#include "excel/xloper12.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

using benchmark::State;
using zavhost::Engine;

void Calls(State& state, Engine& engine, const std::u16string& formula) {
  SecondsOf(engine, formula);
  for (auto _ : state) state.SetIterationTime(SecondsOf(engine, formula));
}

/// Calls so short that only many together can be timed.
void SmallCalls(State& state, Engine& engine, const std::u16string& formula) {
  SecondsOf(engine, formula);
  for (auto _ : state) benchmark::DoNotOptimize(engine.Evaluate(formula, {0, 0, 5}));
}

/// Uses a new range at every call.
void FirstCalls(State& state, std::u16string_view function, char16_t column,
                std::u16string_view further = u"") {
  WarmMemory();
  const std::u16string begin = u"Zav" + std::u16string(function) + u"(";
  const std::u16string end = std::u16string(further) + u")";
  const auto seconds = [&] { return SecondsOf(RealEngine(), begin + NewRange(column) + end); };
  for (int i = 0; i < 3; ++i) seconds();
  for (auto _ : state) state.SetIterationTime(seconds());
}

/// Runs the body of a benchmark; an exception ends only this benchmark.
template <void (*kBody)(State&)>
void Guarded(State& state) {
  try {
    kBody(state);
  } catch (const std::exception& failure) {
    state.SkipWithError(failure.what());
  }
}
#define ZAV_TIMED(name) BENCHMARK(Guarded<name>)->Name(#name)->UseManualTime()

// Floors.

std::vector<XLOPER12> CellRecords() {
  std::vector<XLOPER12> cells(kRows);
  const std::vector<double> numbers = RandomNumbers(kRows, false);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells[i].xltype = xltypeNum;
    cells[i].val.num = numbers[i];
  }
  return cells;
}

/// S: one minimal scan over the records of 1,000,000 cells.
void Scan(State& state) {
  const std::vector<XLOPER12> cells = CellRecords();
  for (auto _ : state) {
    double sum = 0;
    for (const XLOPER12& cell : cells) {
      if (cell.xltype == xltypeNum) sum += cell.val.num;
    }
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(Scan);

void HostReading(State& state) {
  Calls(state, FloorEngine(), u"FloorRead(" + OldRange(kNumbers) + u")");
}
ZAV_TIMED(HostReading);

void HostReadingOfGaps(State& state) {
  Calls(state, FloorEngine(), u"FloorRead(" + OldRange(kGaps) + u")");
}
ZAV_TIMED(HostReadingOfGaps);

void HostReadingOfTen(State& state) { SmallCalls(state, FloorEngine(), u"FloorRead(A1:A10)"); }
BENCHMARK(HostReadingOfTen);

// The mean and further moments.

void FirstMean(State& state) { FirstCalls(state, u"Mean", kNumbers); }
ZAV_TIMED(FirstMean);
const Ratio kFirst("S: ZavMean of 1,000,000 cells never seen, beyond the host's reading",
                   {{"FirstMean"}, {"HostReading", -1}}, {{"Scan"}}, 1.5);

void FirstMeanWithGaps(State& state) { FirstCalls(state, u"Mean", kGaps); }
ZAV_TIMED(FirstMeanWithGaps);
const Ratio kGapped("S: the same, one cell in fifty blank",
                    {{"FirstMeanWithGaps"}, {"HostReadingOfGaps", -1}}, {{"Scan"}});

void RepeatedMean(State& state) {
  Calls(state, RealEngine(), u"ZavMean(" + OldRange(kNumbers) + u")");
}
ZAV_TIMED(RepeatedMean);
const Ratio kRepeated("S: ZavMean again, no cell changed, beyond the host's reading",
                      {{"RepeatedMean"}, {"HostReading", -1}}, {{"Scan"}}, 1);

/// One cell in the middle changes before every call.
void MeanOfChangedCells(State& state) {
  WarmMemory();
  double number = 0;
  for (auto _ : state) {
    RealEngine().workbook().sheets[0].Set(kRows / 2, kNumbers - u'A', number += 1);
    state.SetIterationTime(SecondsOf(RealEngine(), u"ZavMean(" + OldRange(kNumbers) + u")"));
  }
}
ZAV_TIMED(MeanOfChangedCells);
const Ratio kChanged("S: ZavMean again, one cell changed, beyond the host's reading",
                     {{"MeanOfChangedCells"}, {"HostReading", -1}}, {{"Scan"}});

/// After the mean of a range that was not seen before.
void SixMoreMoments(State& state) {
  WarmMemory();
  for (auto _ : state) {
    const std::u16string range = u"(" + NewRange(kNumbers) + u")";
    SecondsOf(RealEngine(), u"ZavMean" + range);
    double seconds = 0;
    for (const char16_t* name :
         {u"ZavMin", u"ZavMax", u"ZavStdDev", u"ZavVariance", u"ZavSkewness", u"ZavKurtosis"})
      seconds += SecondsOf(RealEngine(), name + range);
    state.SetIterationTime(seconds);
  }
}
ZAV_TIMED(SixMoreMoments);
const Ratio kSix("six repeated ZavMean: the six other moments after the first",
                 {{"SixMoreMoments"}}, {{"RepeatedMean", 6}}, 1.1);

void MeanOfTen(State& state) { SmallCalls(state, RealEngine(), u"ZavMean(A1:A10)"); }
BENCHMARK(MeanOfTen);
const Ratio kTen("microseconds: ZavMean of 10 cells, beyond the host's reading",
                 {{"MeanOfTen"}, {"HostReadingOfTen", -1}}, {}, 0.5);

/// Copying the records, without reading them; and the memory of the data set.
void TakeOver(State& state) {
  const std::vector<XLOPER12> cells = CellRecords();
  for (auto _ : state) {
    CellColumns columns;
    columns.Reserve(cells.size());
    columns.Append(cells);
    state.counters["bytes per cell"] = static_cast<double>(columns.bytes()) / kRows;
  }
}
BENCHMARK(TakeOver);
const Ratio kTakeOver("S: taking 1,000,000 cells over into a data set", {{"TakeOver"}}, {{"Scan"}});

// Percentiles.

void StandardSort(State& state, bool ties) {
  const std::vector<double> numbers = RandomNumbers(kRows, ties);
  std::vector<double> sorted;
  for (auto _ : state) {
    sorted = numbers;
    const auto begin = std::chrono::steady_clock::now();
    std::sort(sorted.begin(), sorted.end());
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(time.count());
  }
}
void SortRandom(State& state) { StandardSort(state, false); }
void SortTies(State& state) { StandardSort(state, true); }
ZAV_TIMED(SortRandom);
ZAV_TIMED(SortTies);

void FirstPercentile(State& state) { FirstCalls(state, u"Percentile", kNumbers, u",0.3,1"); }
ZAV_TIMED(FirstPercentile);
const Ratio kPercentile(
    "std::sort: ZavPercentile of 1,000,000 cells never seen, beyond the host's reading",
    {{"FirstPercentile"}, {"HostReading", -1}}, {{"SortRandom"}}, 0.1);

void FirstPercentileOfTies(State& state) { FirstCalls(state, u"Percentile", kTies, u",0.3,1"); }
ZAV_TIMED(FirstPercentileOfTies);
const Ratio kPercentileOfTies("std::sort: the same over a hundred different numbers",
                              {{"FirstPercentileOfTies"}, {"HostReading", -1}}, {{"SortTies"}},
                              0.25);

/// After the first percentile of a range that was not seen before.
void NineMorePercentiles(State& state) {
  WarmMemory();
  for (auto _ : state) {
    const std::u16string begin = u"ZavPercentile(" + NewRange(kNumbers) + u",0.";
    SecondsOf(RealEngine(), begin + u"05,1)");
    double seconds = 0;
    for (char16_t digit = u'1'; digit <= u'9'; ++digit)
      seconds += SecondsOf(RealEngine(), begin + digit + u",1)");
    state.SetIterationTime(seconds);
  }
}
ZAV_TIMED(NineMorePercentiles);
const Ratio kNine("nine repeated ZavMean: nine further percentiles of the same cells",
                  {{"NineMorePercentiles"}}, {{"RepeatedMean", 9}}, 1.3);

// Categories and pairs.

void HostReadingOfLabels(State& state) {
  Calls(state, FloorEngine(), u"FloorRead(" + OldRange(kLabels) + u")");
}
ZAV_TIMED(HostReadingOfLabels);

void FirstCategories(State& state) { FirstCalls(state, u"CountCategories", kLabels); }
ZAV_TIMED(FirstCategories);
const Ratio kCategories(
    "S: ZavCountCategories of 1,000,000 texts never seen, ten thousand different ones, beyond the "
    "host's reading",
    {{"FirstCategories"}, {"HostReadingOfLabels", -1}}, {{"Scan"}}, 30);

void RepeatedCategories(State& state) {
  Calls(state, RealEngine(), u"ZavCountCategories(" + OldRange(kLabels) + u")");
}
ZAV_TIMED(RepeatedCategories);
const Ratio kCategoriesAgain(
    "S: ZavCountCategories again, no cell changed, beyond the host's reading",
    {{"RepeatedCategories"}, {"HostReadingOfLabels", -1}}, {{"Scan"}});

void RepeatedCategoryNames(State& state) {
  Calls(state, RealEngine(), u"COUNTA(ZavCategoryNames(" + OldRange(kLabels) + u"))");
}
ZAV_TIMED(RepeatedCategoryNames);
const Ratio kCategoryNames("ZavCountCategories again: ZavCategoryNames after it",
                           {{"RepeatedCategoryNames"}}, {{"RepeatedCategories"}});

void FirstPairMedian(State& state) {
  WarmMemory();
  for (auto _ : state) {
    const std::u16string formula =
        u"ZavPairMedian(" + NewRange(kNumbers) + u"," + NewRange(kGaps) + u",0)";
    state.SetIterationTime(SecondsOf(RealEngine(), formula));
  }
}
ZAV_TIMED(FirstPairMedian);
const Ratio kPairMedian("S: ZavPairMedian of 1,000,000 pairs never seen, beyond the host's reading",
                        {{"FirstPairMedian"}, {"HostReading", -1}, {"HostReadingOfGaps", -1}},
                        {{"Scan"}}, 8);

void RepeatedPairMean(State& state) {
  Calls(state, RealEngine(), u"ZavPairMean(" + OldRange(kNumbers) + u"," + OldRange(kGaps) + u")");
}
ZAV_TIMED(RepeatedPairMean);
const Ratio kPairMean("S: ZavPairMean again, no cell changed, beyond the host's reading",
                      {{"RepeatedPairMean"}, {"HostReading", -1}, {"HostReadingOfGaps", -1}},
                      {{"Scan"}}, 2.5);

}  // namespace
}  // namespace zavrel::bench
