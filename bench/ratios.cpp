#include "ratios.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <vector>

namespace zavrel::bench {
namespace {

struct Comparison {
  std::string name;
  std::string floor;
  std::string meaning;
};

std::vector<Comparison>& Comparisons() {
  static std::vector<Comparison> comparisons;
  return comparisons;
}

/// The usual table, and the smallest time of every benchmark.
class KeepingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      const double time = run.real_accumulated_time / static_cast<double>(run.iterations);
      const auto [entry, is_new] = times.emplace(run.run_name.function_name, time);
      if (!is_new && time < entry->second) entry->second = time;
    }
    ConsoleReporter::ReportRuns(runs);
  }

  std::map<std::string, double> times;  // seconds an iteration
};

}  // namespace

Ratio::Ratio(std::string name, std::string floor, std::string meaning) {
  Comparisons().push_back({std::move(name), std::move(floor), std::move(meaning)});
}

}  // namespace zavrel::bench

int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  zavrel::bench::KeepingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%-34s %-26s %8s\n", "benchmark", "floor", "ratio");
  for (const auto& comparison : zavrel::bench::Comparisons()) {
    const auto time = reporter.times.find(comparison.name);
    const auto floor = reporter.times.find(comparison.floor);
    if (time == reporter.times.end() || floor == reporter.times.end()) continue;
    std::printf("%-34s %-26s %8.2f  %s\n", comparison.name.c_str(), comparison.floor.c_str(),
                time->second / floor->second, comparison.meaning.c_str());
  }
  return 0;
}
