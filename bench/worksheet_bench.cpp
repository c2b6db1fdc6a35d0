// Worksheet calls through the host, against an add-in that does the least that is possible.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

#include "host/calc/engine.h"
#include "ratios.h"
#include "stats/moment_block.h"
#include "stats/single_statistics.h"

namespace zavrel::bench {
namespace {

using zavhost::Engine;
using zavhost::Value;

constexpr int kRows = 1'000'000;

/// A column of numbers with one gap in fifty.
zavhost::Workbook MillionCells() {
  zavhost::Workbook book;
  book.sheets.emplace_back(u"Data");
  std::mt19937 random(1);
  for (int row = 0; row < kRows; ++row) {
    if (random() % 50 != 0)
      book.sheets[0].Append(row, 0, Value(static_cast<double>(random()) / 1000));
  }
  book.sheets[0].SortColumns();
  return book;
}

enum class AddIn { kFloor, kReal };

Engine& Start(Engine& engine, AddIn add_in) {
  if (add_in == AddIn::kFloor) {
    engine.LoadAddIn(FLOOR_ADD_IN);
  } else {
    engine.LoadAddIn(std::filesystem::read_symlink("/proc/self/exe"));
    engine.Announce(5);
  }
  return engine;
}

void Calls(benchmark::State& state, Engine& engine, std::u16string_view formula) {
  for (auto _ : state) benchmark::DoNotOptimize(engine.Evaluate(formula, {0, 0, 5}));
  if (engine.judge().count() != 0) state.SkipWithError("the judge found violations");
}

void FloorScan(benchmark::State& state) {
  Engine engine(MillionCells());
  Calls(state, Start(engine, AddIn::kFloor), u"FloorScan(A1:A1000000)");
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(FloorScan)->Unit(benchmark::kMillisecond);

/// The same range again, nothing changed: cells are read and compared, the mean is known.
void MeanOfUnchangedCells(benchmark::State& state) {
  Engine engine(MillionCells());
  Calls(state, Start(engine, AddIn::kReal), u"ZavMean(A1:A1000000)");
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(MeanOfUnchangedCells)->Unit(benchmark::kMillisecond);
const Ratio kUnchanged("MeanOfUnchangedCells", "FloorScan",
                       "ZavMean of 1,000,000 cells seen before");

/// One cell changes before every call: a new data set and new moments.
void MeanOfChangedCells(benchmark::State& state) {
  Engine engine(MillionCells());
  Start(engine, AddIn::kReal);
  double number = 0;
  for (auto _ : state) {
    engine.workbook().sheets[0].Set(kRows / 2, 0, Value(number += 1));
    benchmark::DoNotOptimize(engine.Evaluate(u"ZavMean(A1:A1000000)", {0, 0, 5}));
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(MeanOfChangedCells)->Unit(benchmark::kMillisecond);
const Ratio kChanged("MeanOfChangedCells", "FloorScan",
                     "ZavMean of 1,000,000 cells, one of them new");

void FloorCall(benchmark::State& state) {
  zavhost::Workbook book;
  book.sheets.emplace_back(u"Data");
  Engine engine(std::move(book));
  Calls(state, Start(engine, AddIn::kFloor), u"FloorNothing(1)");
}
BENCHMARK(FloorCall);

void MeanOfOneValue(benchmark::State& state) {
  zavhost::Workbook book;
  book.sheets.emplace_back(u"Data");
  Engine engine(std::move(book));
  Calls(state, Start(engine, AddIn::kReal), u"ZavMean(1)");
}
BENCHMARK(MeanOfOneValue);
const Ratio kCall("MeanOfOneValue", "FloorCall", "ZavMean(1), host and marshalling in both");

std::vector<double> Numbers() {
  std::mt19937 random(1);
  std::vector<double> numbers(kRows);
  for (double& number : numbers) number = static_cast<double>(random()) / 1000;
  return numbers;
}

void FloorTwoPasses(benchmark::State& state) {
  const std::vector<double> numbers = Numbers();
  for (auto _ : state) {
    double sum = 0;
    for (const double x : numbers) sum += x;
    const double mean = sum / kRows;
    double squares = 0;
    for (const double x : numbers) squares += (x - mean) * (x - mean);
    benchmark::DoNotOptimize(squares);
  }
}
BENCHMARK(FloorTwoPasses)->Unit(benchmark::kMillisecond);

void MomentBlockKernel(benchmark::State& state) {
  const std::vector<double> numbers = Numbers();
  for (auto _ : state) benchmark::DoNotOptimize(ComputeBothForms(numbers));
}
BENCHMARK(MomentBlockKernel)->Unit(benchmark::kMillisecond);
const Ratio kMoments("MomentBlockKernel", "FloorTwoPasses",
                     "seven statistics in both forms, 1,000,000 numbers");

}  // namespace
}  // namespace zavrel::bench
