#pragma once
// Hosts with the floor add-in and with the real one, over the same cells.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/calc/engine.h"

namespace zavrel::bench {

/// Cells of a large range.
inline constexpr int kRows = 1'000'000;

/// `count` random numbers; with ties, only a hundred different numbers.
std::vector<double> RandomNumbers(int count, bool ties);

/// The sheet's columns, 1,048,576 rows each.
inline constexpr char16_t kNumbers = u'A';  // random numbers
inline constexpr char16_t kTies = u'B';     // a hundred different numbers
inline constexpr char16_t kGaps = u'C';     // random numbers, one cell in fifty blank
inline constexpr char16_t kLabels = u'D';   // ten thousand different texts

/// Both live as long as the program.
zavhost::Engine& FloorEngine();
zavhost::Engine& RealEngine();

/// "A7:A1000006": a range of kRows cells, a different one at every call, so that no data set for it
/// is in the cache.
std::u16string NewRange(char16_t column);
/// The range that never changes.
std::u16string OldRange(char16_t column);

/// The time of a formula in seconds; its value must be a number.
double SecondsOf(zavhost::Engine& engine, std::u16string_view formula);

/// Evaluates a formula repeatedly with the real add-in.
void Calls(benchmark::State& state, std::u16string_view formula);

/// Calls functions on new ranges until the caches are full; from then on, every data set reuses
/// memory of an earlier one.
void WarmMemory();

}  // namespace zavrel::bench
