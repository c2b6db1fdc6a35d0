#include "engines.h"

#include <filesystem>
#include <random>
#include <stdexcept>

#include "excel/xloper12.h"

namespace zavrel::bench {
namespace {

using zavhost::Engine;
using zavhost::Value;

zavhost::Workbook LargeWorkbook() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  for (const bool ties : {false, true}) {
    const std::vector<double> numbers = RandomNumbers(kExcelRows, ties);
    for (int row = 0; row < kExcelRows; ++row) {
      const Value number(numbers[static_cast<std::size_t>(row)]);
      sheet.Append(row, ties ? kTies - u'A' : kNumbers - u'A', number);
      if (!ties && row % 50 != 7) sheet.Append(row, kGaps - u'A', number);
    }
  }
  std::mt19937_64 random(2);
  for (int row = 0; row < kExcelRows; ++row) {
    const std::string label = "Region " + std::to_string(random() % 10'000);
    sheet.Append(row, kLabels - u'A', Value(std::u16string(label.begin(), label.end())));
  }
  sheet.SortColumns();
  return book;
}

std::filesystem::path RealAddIn() { return ZAVREL_ADD_IN; }

std::u16string Range(char16_t column, int first_row) {
  const std::string text = std::to_string(first_row) + ":" +
                           std::string(1, static_cast<char>(column)) +
                           std::to_string(first_row + kRows - 1);
  return column + std::u16string(text.begin(), text.end());
}

}  // namespace

std::vector<double> RandomNumbers(int count, bool ties) {
  std::mt19937_64 random(1);
  std::vector<double> numbers(static_cast<std::size_t>(count));
  std::normal_distribution<double> normal(100, 15);
  for (double& number : numbers)
    number = ties ? static_cast<double>(random() % 100) : normal(random);
  return numbers;
}

// Never destroyed, since the add-in's own statics may be destroyed first at the end of the program.
Engine& FloorEngine() {
  static Engine& engine = *[] {
    auto* made = new Engine(LargeWorkbook());
    made->LoadAddIn(FLOOR_ADD_IN);
    return made;
  }();
  return engine;
}

Engine& RealEngine() {
  static Engine& engine = *[] {
    auto* made = new Engine(LargeWorkbook());
    made->LoadAddIn(RealAddIn());
    made->Announce(5);
    return made;
  }();
  return engine;
}

std::u16string NewRange(char16_t column) {
  static int shift = 0;
  shift = (shift + 1) % (kExcelRows - kRows);
  return Range(column, 2 + shift);
}

std::u16string OldRange(char16_t column) { return Range(column, 1); }

double SecondsOf(Engine& engine, std::u16string_view formula) {
  const auto begin = std::chrono::steady_clock::now();
  const zavhost::Operand result = engine.Evaluate(formula, {0, 0, 5});
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  const Value* value = std::get_if<Value>(&result);
  if (value == nullptr || value->number() == nullptr || engine.judge().count() != 0)
    throw std::runtime_error("no number, or the judge found something: " +
                             zavhost::Utf8FromUtf16(formula));
  return time.count();
}

void Calls(benchmark::State& state, std::u16string_view formula) {
  SecondsOf(RealEngine(), formula);
  for (auto _ : state) benchmark::DoNotOptimize(RealEngine().Evaluate(formula, {0, 0, 5}));
}

void WarmMemory() {
  static const bool warm = [] {
    for (int i = 0; i < 80; ++i) SecondsOf(RealEngine(), u"ZavMean(" + NewRange(kNumbers) + u")");
    return true;
  }();
  static_cast<void>(warm);
}

}  // namespace zavrel::bench
